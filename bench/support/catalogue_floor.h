#ifndef ZEBCOMN_BENCH_SUPPORT_CATALOGUE_FLOOR_H_
#define ZEBCOMN_BENCH_SUPPORT_CATALOGUE_FLOOR_H_

// The system and C library calls that the catalogue of system properties cannot do without, group
// by group, and nothing else.

namespace zebcomn_bench {

/// Is given every text that the calls come to.
using Take = void (*)(const char* text);

/// One conversion to wide text: a converter of its own, two work buffers and the caller's.
void ConvertBare(const char* text);

/// Reads a file to its end; false when it cannot be opened or is empty. The text of its last block
/// is taken.
bool ReadWholeFile(const char* path, Take take);

void AskForNames(Take take);
void AskForInterfaces(Take take);
void MeasureFileSystems(Take take);
void AskForUserAndTime(Take take);

/// All of them, the system files, and the conversions of what they give.
void AskForCatalogue(Take take);

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_SUPPORT_CATALOGUE_FLOOR_H_
