// A program that makes only the calls that zebinfo's output requires, and prints what they gave:
// the floor of zebinfo as a process.
#include <cstring>
#include <iostream>
#include <string>

#include "bench/support/catalogue_floor.h"

int main() {
  zebcomn_bench::AskForCatalogue([](const char* text) {
    std::cout.write(text, static_cast<std::streamsize>(std::strcspn(text, "\n"))) << '\n';
  });
  std::cout.flush();
  return std::cout ? 0 : 1;
}
