/// The system's own header and what macOS adds: blocks that are set aside for a file.
#pragma once
#pragma GCC system_header
#include_next <fcntl.h>

#define F_PREALLOCATE 42

#define F_ALLOCATEALL 0x00000004
#define F_PEOFPOSMODE 3

struct fstore_t {
  unsigned int fst_flags;
  int fst_posmode;
  off_t fst_offset;
  off_t fst_length;
  off_t fst_bytesalloc;
};
