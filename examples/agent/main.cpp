#include <cstdio>
#include <exception>

#include "examples/agent/agent.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s PLUGIN\n", argv[0]);
    return 2;
  }
  try {
    return example::Agent(argv[1]).Run();
  } catch (const std::exception& error) {
    // The system log has it too, but whoever starts the agent by hand looks here.
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
}
