# Flags that make a fault in the program harder to exploit, each where the compiler has it. Not with sanitizers, which
# find the same faults themselves and break when calls are fortified, nor in what is measured for coverage.
if(PELMARIX_SANITIZE OR PELMARIX_COVERAGE)
  return()
endif()
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
check_pie_supported(LANGUAGES CXX)

# A flag that a compiler only ignores is none that it has.
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "PELMARIX_HAS${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(pelmarix_options INTERFACE ${flag})
  endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)
foreach(flag -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  string(MAKE_C_IDENTIFIER "PELMARIX_HAS${flag}" known)
  check_linker_flag(CXX ${flag} ${known})
  if(${known})
    target_link_options(pelmarix_options INTERFACE ${flag})
  endif()
endforeach()

# Checked calls of the C library exist only in optimised code. Undefined first, in the same list of options: some
# compilers have a level of their own.
target_compile_options(pelmarix_options INTERFACE "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
target_compile_definitions(pelmarix_options INTERFACE _GLIBCXX_ASSERTIONS)
