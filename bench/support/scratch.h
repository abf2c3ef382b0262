#ifndef ZEBCOMN_BENCH_SUPPORT_SCRATCH_H_
#define ZEBCOMN_BENCH_SUPPORT_SCRATCH_H_

#include <string>

namespace zebcomn_bench {

/// A new folder of this program's own: in TMPDIR, else in "/dev/shm" where the machine has one,
/// because the less a file system costs, the more of the measured time is the library's; else in
/// "/tmp". Removed with everything in it when the program ends.
const std::string& ScratchFolder();

/// Makes a file of so many bytes and gives its path; the same file for the same size.
const std::string& FileOfSize(std::size_t bytes);

/// Makes a folder of so many empty files, "entry-0.log", "entry-1.txt", "entry-2.log" and so on;
/// the same folder for the same number.
const std::string& FolderOfEntries(std::size_t entries);

/// Fills `folder`, which it makes, with so many empty files, at most a hundred in each of its
/// subfolders.
void MakeTree(const std::string& folder, std::size_t files);

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_SUPPORT_SCRATCH_H_
