# STRICTEST_WARNINGS: every warning that a caller may have switched on, beyond the project's own. What
# is left out has its reason here.
set(gnu_both
  -Wcast-align=strict -Wcast-qual -Wdate-time -Wdouble-promotion -Wduplicated-branches
  -Wduplicated-cond -Wfloat-equal -Wlogical-op -Wmissing-declarations -Wnull-dereference
  -Wredundant-decls -Wswitch-default -Wswitch-enum -Wunused-macros -Wvla -Wwrite-strings)
set(gnu_c
  -Wbad-function-cast -Wc++-compat -Wdeclaration-after-statement -Wmissing-prototypes
  -Wnested-externs -Wold-style-definition -Wstrict-prototypes)
set(gnu_cxx
  -Wctor-dtor-privacy -Weffc++ -Wextra-semi -Wnoexcept -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Wsign-promo -Wstrict-null-sentinel -Wsuggest-override -Wuseless-cast
  -Wzero-as-null-pointer-constant)
set(clang_both
  -Weverything
  # The name of the handle record is part of the interface.
  -Wno-reserved-identifier)
set(clang_cxx
  # The library needs C++17.
  -Wno-c++98-compat -Wno-c++98-compat-pedantic)
set(STRICTEST_WARNINGS
  "$<$<COMPILE_LANG_AND_ID:C,GNU>:${gnu_both};${gnu_c}>"
  "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:${gnu_both};${gnu_cxx}>"
  "$<$<COMPILE_LANG_AND_ID:C,Clang>:${clang_both}>"
  "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:${clang_both};${clang_cxx}>")
