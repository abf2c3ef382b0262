// Flat paths, links followed to their end, and trees deleted.
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/reliability/out_of_memory.h"
#include "tests/reliability/sweep.h"
#include "tests/reliability/working_directory.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/portable/types.h"
#include "zebcomn/util/delete_tree.h"
#include "zebcomn/util/filenameflattener.h"
#include "zebcomn/util/filenameresolver.h"

namespace {

using zebcomn_test::CallThatMayThrow;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::PrivateHost;
using zebcomn_test::ScratchDir;
using zebcomn_test::Trial;
using zebcomn_test::WorkingDirectory;

// A working directory that cannot be read counts as the root.
ZEBCOMN_USE(PathFailures, Relative, "FileNameFlattener::FileNameFlattener",
            "FileNameFlattener::GetFlatPath") {
  const ScratchDir dir;
  const WorkingDirectory here(dir.path());
  const std::string path = "a/path/that/./takes/../some/memory";
  std::string flat = "as it was";
  bool is_flat = false;
  const bool done = CallThatMayThrow(trial, [&] {
    FileNameFlattener flattener(path);
    is_flat = flattener.GetFlatPath(flat);
  });
  if (done) {
    const bool at_root = trial.FailedIn("operator new (nothrow)") || trial.FailedIn("getcwd");
    EXPECT_TRUE(is_flat);
    EXPECT_EQ(flat, (at_root ? "" : dir.path()) + "/a/path/that/some/memory");
  } else {
    EXPECT_EQ(flat, "as it was");
  }
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(PathFailures, WithABaseDirectory, "FileNameFlattener::FileNameFlattener") {
  const std::string path = "a/path/that/./takes/../some/memory";
  const std::string base = "/a/base/directory/of/some/length";
  std::string flat = "as it was";
  bool is_flat = false;
  const bool done = CallThatMayThrow(trial, [&] {
    FileNameFlattener flattener(path, base);
    is_flat = flattener.GetFlatPath(flat);
  });
  EXPECT_EQ(is_flat, done);
  EXPECT_EQ(flat, done ? base + "/a/path/that/some/memory" : "as it was");
}

// A copy has no memory to spare for the flat path. Without it, it is not flat.
ZEBCOMN_USE(PathFailures, FlattenedAgain, "FileNameFlattener::Flatten") {
  const FileNameFlattener original("/a/path/that/leads/../../../back/and/forth/and/back/again");
  FileNameFlattener copy = original;
  std::string flat = "as it was";
  bool is_flat = false;
  const bool done = CallThatMayThrow(trial, [&] { is_flat = copy.Flatten(); });
  EXPECT_EQ(is_flat, done);
  EXPECT_EQ(copy.GetFlatPath(flat), done);
  EXPECT_EQ(flat, done ? "/a/back/and/forth/and/back/again" : "as it was");
}

// What cannot be looked at or followed does not resolve.
ZEBCOMN_USE(PathFailures, ResolvedLink, "FileNameResolver::FileNameResolver",
            "FileNameResolver::GetAbsolutePath") {
  const ScratchDir dir;
  const std::string target = dir.Write("a-file-of-some-length", "");
  const std::string link = dir / "a-link-of-some-length";
  EXPECT_EQ(symlink("a-file-of-some-length", link.c_str()), 0);
  std::string path = "as it was";
  bool resolved = false;
  const bool done = CallThatMayThrow(trial, [&] {
    FileNameResolver resolver(link);
    resolved = resolver.GetAbsolutePath(path);
  });
  // The working directory is asked for, but nothing here is relative to it.
  const bool fails = !done || trial.FailedIn("lstat") || trial.FailedIn("readlink");
  EXPECT_EQ(resolved, !fails);
  EXPECT_EQ(path, fails ? "as it was" : target);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

// The path is relative to the working directory, which is asked for first; no link is.
ZEBCOMN_USE(PathFailures, ResolvedChain, "FileNameResolver::FileNameResolver") {
  const ScratchDir dir;
  const WorkingDirectory here(dir.path());
  const std::string target = dir.Write("a-file-of-some-length", "");
  EXPECT_EQ(symlink("./the-second-link-of-some-length", "the-first-link-of-some-length"), 0);
  EXPECT_EQ(symlink(target.c_str(), "the-second-link-of-some-length"), 0);
  std::string path = "as it was";
  bool resolved = false;
  const bool done = CallThatMayThrow(trial, [&] {
    FileNameResolver resolver("the-first-link-of-some-length");
    resolved = resolver.GetAbsolutePath(path);
  });
  const bool at_root = trial.FailedIn("operator new (nothrow)", 1) || trial.FailedIn("getcwd", 1);
  const bool fails = !done || at_root || trial.FailedIn("lstat") || trial.FailedIn("readlink");
  EXPECT_EQ(resolved, !fails);
  EXPECT_EQ(path, fails ? "as it was" : target);
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

ZEBCOMN_USE(PathFailures, FlatCalls, "tivmcomn_filenameresolver_create",
            "tivmcomn_filenameresolver_get_absolute_filename",
            "tivmcomn_filenameresolver_destroy") {
  const ScratchDir dir;
  const std::string file = dir.Write("a-file-of-some-length", "");
  void* const nothing = &trial;
  void* resolver = nothing;
  char path[ZEBCOMN_PATH_CAPACITY] = "as it was";
  unsigned size = sizeof path;
  unsigned created = 77;
  unsigned resolved = 77;
  trial.Call([&] { created = tivmcomn_filenameresolver_create(file.c_str(), &resolver); });
  if (created != ZEBCOMN_STATUS_OK) {
    EXPECT_EQ(created, ZEBCOMN_STATUS_FAILURE);
    EXPECT_TRUE(trial.FailedInAllocation());
    EXPECT_EQ(resolver, nothing);
    return;
  }
  trial.Call(
      [&] { resolved = tivmcomn_filenameresolver_get_absolute_filename(resolver, path, &size); });
  if (resolved == ZEBCOMN_STATUS_OK) {
    EXPECT_EQ(path, file);
    EXPECT_EQ(size, file.size() + 1);
    EXPECT_FALSE(trial.FailedIn("lstat"));
  } else {
    EXPECT_EQ(resolved, ZEBCOMN_STATUS_FAILURE);
    EXPECT_TRUE(trial.FailedIn("lstat") || trial.FailedIn("operator new"));
    EXPECT_STREQ(path, "as it was");
    EXPECT_EQ(size, sizeof path);
  }
  trial.Call([&] { EXPECT_EQ(tivmcomn_filenameresolver_destroy(resolver), ZEBCOMN_STATUS_OK); });
  EXPECT_EQ(trial.ErrorSlot(), kErrorLeftAlone);
}

/// Makes an empty file system the root of the child's view, so that no other file of the machine
/// has a name there. The leak checker looks for the process under "/proc".
void PutStage(PrivateHost& host) {
  host.PutEmptyDirectory("/mnt");
  if (mkdir("/mnt/proc", 0700) != 0 ||
      mount("/proc", "/mnt/proc", "none", MS_BIND | MS_REC, nullptr) != 0) {
    throw std::runtime_error("no \"/proc\" on the stage");
  }
  if (chroot("/mnt") != 0 || chdir("/") != 0) throw std::runtime_error("no stage");
}

void MakeDirectory(const char* path) {
  if (mkdir(path, 0700) != 0 && errno != EEXIST) throw std::runtime_error(path);
}

/// A tree with a file at the top and one below, and a neighbour that is none of it. The root itself
/// is not looked at: an emulator may remember "/" from before the chroot().
void MakeTree() {
  MakeDirectory("/tree");
  MakeDirectory("/tree/dir");
  zebcomn_test::WriteFile("/tree/file", "");
  zebcomn_test::WriteFile("/tree/dir/inner", "");
  zebcomn_test::WriteFile("/neighbour", "");
}

/// Whether the deletion goes past a failure of this run: a search that cannot be closed has ended
/// all the same.
bool IsHarmlessToDeletion(const Trial& trial) {
  return !trial.Failed() || trial.FailedIn("closedir") || trial.FailedIn("pthread_mutex_unlock");
}

// What cannot be deleted is passed over without a word; the rest goes, and it goes the next time.
void CheckDeletion(Trial& trial, void (*remove)(char*), bool root_goes) {
  MakeTree();
  std::string tree = "/tree";
  trial.Call([&] { remove(tree.data()); });
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? EAGAIN : kErrorLeftAlone);
  const bool is_empty = !std::filesystem::exists("/tree") || std::filesystem::is_empty("/tree");
  const bool all_gone = is_empty && std::filesystem::exists("/tree") != root_goes;
  // An entry whose status cannot be read is deleted as a file, which it may be; a reading that ends
  // early may have been at its end.
  if (!trial.FailedIn("stat") && !trial.FailedIn("readdir")) {
    EXPECT_EQ(all_gone, IsHarmlessToDeletion(trial));
  }
  EXPECT_TRUE(std::filesystem::exists("/neighbour"));
  remove(tree.data());
  EXPECT_EQ(std::filesystem::exists("/tree"), !root_goes);
  tivmcomn_deltree(tree.data());
  EXPECT_FALSE(std::filesystem::exists("/tree"));
}

ZEBCOMN_HOST_USE(DeletionFailures, Tree, PutStage, "tivmcomn_deltree") {
  CheckDeletion(trial, tivmcomn_deltree, true);
}

ZEBCOMN_HOST_USE(DeletionFailures, Subtree, PutStage, "tivmcomn_delsubtree") {
  CheckDeletion(trial, tivmcomn_delsubtree, false);
}

}  // namespace
