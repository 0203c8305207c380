// What macOS has beside POSIX, as far as the library calls it, on this system.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

extern "C" __attribute__((noreturn)) void __assert_rtn(char const* function, char const* file, int line,
                                                       char const* expression) {
  std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n", expression, function, file, line);
  std::abort();
}

namespace {

/// Blocks behind those that the file has. The length stays.
int Preallocate(int fd, fstore_t& store) {
  struct stat status;
  if (store.fst_flags != F_ALLOCATEALL || store.fst_posmode != F_PEOFPOSMODE || store.fst_offset != 0) {
    errno = EINVAL;
    return -1;
  }
  if (fstat(fd, &status) != 0 ||
      fallocate(fd, FALLOC_FL_KEEP_SIZE, status.st_blocks * off_t{512}, store.fst_length) != 0) {
    return -1;
  }
  store.fst_bytesalloc = store.fst_length;
  return 0;
}

}  // namespace

#pragma GCC visibility push(default)

extern "C" int fcntl(int fd, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (command == F_PREALLOCATE) {
    return Preallocate(fd, *static_cast<fstore_t*>(argument));
  }
  static auto* const next = reinterpret_cast<int (*)(int, int, ...)>(dlsym(RTLD_NEXT, "fcntl"));
  return next(fd, command, argument);
}

#pragma GCC visibility pop
