# Every test program runs under valgrind's memory checker, and so does each program of ours that it
# starts. An error or a lost block, in the program or in a child that it forks, ends the process
# with status 99, and so fails the test.
find_program(ZEBCOMN_VALGRIND_PROGRAM valgrind REQUIRED)
set(ZEBCOMN_TEST_LAUNCHER "${ZEBCOMN_VALGRIND_PROGRAM}" --quiet --error-exitcode=99
  --leak-check=full --show-leak-kinds=definite,indirect,possible
  --errors-for-leak-kinds=definite,indirect,possible
  --num-callers=30 "--suppressions=${PROJECT_SOURCE_DIR}/tests/support/valgrind.supp"
  --trace-children=yes "--trace-children-skip=/bin/*,/sbin/*,/usr/*"
  # A loop that yields must not keep the processor from the thread that it waits for.
  --fair-sched=yes
  # The allocation functions that a test defines stay the test's: they fail some calls.
  --soname-synonyms=somalloc=nouserintercepts
  CACHE INTERNAL "")
set(ZEBCOMN_TEST_TIME_FACTOR 12 CACHE INTERNAL "")
