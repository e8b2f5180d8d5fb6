#include "support/faults.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>

#include <atomic>
#include <new>

namespace qxe::test {

namespace {

std::atomic<bool> g_armed{false};
std::atomic<bool> g_fired{false};
std::atomic<long> g_left{0};
Fault g_fault{};  // written while not armed

/// Whether this call is to fail.
bool fails(FaultKind kind) {
  if (!g_armed.load(std::memory_order_acquire) || g_fault.kind != kind) return false;
  const long left = g_left.fetch_sub(1);
  if (left > 0 || (left < 0 && !g_fault.persistent)) return false;
  g_fired = true;
  return true;
}

bool no_memory() {
  if (!fails(FaultKind::kAllocation)) return false;
  errno = ENOMEM;
  return true;
}

bool no_file() {
  if (!fails(FaultKind::kFileCall)) return false;
  errno = EIO;
  return true;
}

size_t moved_size(size_t size) {
  return size > 1 && fails(FaultKind::kPart) ? size / 2 : size;
}

bool no_thread() {
  return fails(FaultKind::kThread);
}

}  // namespace

std::string to_text(const Fault& fault) {
  static constexpr const char* kKinds[] = {"allocation", "file call", "thread start", "transfer"};
  return std::string(kKinds[static_cast<int>(fault.kind)]) + " " + std::to_string(fault.after) +
         (fault.persistent ? " and all after it fail" : " fails");
}

ArmedFault::ArmedFault(const Fault& fault) {
  g_fault = fault;
  g_left = fault.after;
  g_fired = false;
  g_armed.store(true, std::memory_order_release);
}

ArmedFault::~ArmedFault() {
  g_armed = false;
}

bool ArmedFault::fired() const {
  return g_fired;
}

}  // namespace qxe::test

// The linker sends each call of `name` to __wrap_name; __real_name is the system's.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
using qxe::test::moved_size;
using qxe::test::no_file;
using qxe::test::no_memory;
using qxe::test::no_thread;

extern "C" {

#define QXE_WRAP(failing, failure, result, name, parameters, ...) \
  result __real_##name parameters;                                \
  result __wrap_##name parameters;                                \
  result __wrap_##name parameters {                               \
    return (failing) ? failure : __real_##name(__VA_ARGS__);      \
  }

QXE_WRAP(no_memory(), nullptr, void*, malloc, (size_t size), size)
QXE_WRAP(no_memory(), nullptr, void*, realloc, (void* block, size_t size), block, size)
QXE_WRAP(no_memory(), nullptr, void*, aligned_alloc, (size_t alignment, size_t size), alignment,
         size)
QXE_WRAP(file < 0 ? no_memory() : no_file(), MAP_FAILED, void*, mmap,
         (void* place, size_t size, int access, int flags, int file, off_t offset), place, size,
         access, flags, file, offset)

QXE_WRAP(no_file(), -1, int, stat, (const char* path, struct stat* out), path, out)
QXE_WRAP(no_file(), -1, int, fstat, (int file, struct stat* out), file, out)
QXE_WRAP(no_file(), -1, int, faccessat, (int at, const char* path, int mode, int flags), at, path,
         mode, flags)
QXE_WRAP(no_file(), -1, ssize_t, pread, (int file, void* out, size_t size, off_t offset), file, out,
         moved_size(size), offset)
QXE_WRAP(no_file(), -1, ssize_t, pwrite, (int file, const void* data, size_t size, off_t offset),
         file, data, moved_size(size), offset)
QXE_WRAP(no_file(), -1, int, ftruncate, (int file, off_t size), file, size)
QXE_WRAP(no_file(), -1, int, fallocate, (int file, int mode, off_t start, off_t size), file, mode,
         start, size)
QXE_WRAP(no_file(), nullptr, char*, realpath, (const char* path, char* out), path, out)
QXE_WRAP(no_file(), EOF, int, fflush, (FILE * file), file)
QXE_WRAP(no_file(), -1, ssize_t, write, (int file, const void* data, size_t size), file, data, size)
QXE_WRAP(no_file(), nullptr, DIR*, opendir, (const char* path), path)
QXE_WRAP(no_file(), nullptr, dirent*, readdir, (DIR * directory), directory)
QXE_WRAP(no_file(), -1, int, unlink, (const char* path), path)
QXE_WRAP(no_file(), nullptr, char*, getcwd, (char* out, size_t size), out, size)
QXE_WRAP(no_file(), nullptr, FILE*, fopen, (const char* path, const char* mode), path, mode)
QXE_WRAP(no_file(), nullptr, char*, fgets, (char* line, int size, FILE* file), line, size, file)
QXE_WRAP(no_file(), 0, size_t, fread, (void* out, size_t size, size_t n, FILE* file), out, size, n,
         file)
QXE_WRAP(no_file(), 0, size_t, fwrite, (const void* data, size_t size, size_t n, FILE* file), data,
         size, n, file)
QXE_WRAP(no_file(), -1, int, fseek, (FILE * file, long offset, int whence), file, offset, whence)
QXE_WRAP(no_file(), -1, long, ftell, (FILE * file), file)
QXE_WRAP(no_file(), -1, int, setvbuf, (FILE * file, char* buffer, int mode, size_t size), file,
         buffer, mode, size)

QXE_WRAP(no_thread(), EAGAIN, int, pthread_create,
         (pthread_t * thread, const pthread_attr_t* attributes, void* (*body)(void*), void* data),
         thread, attributes, body, data)

int __real_open(const char* path, int flags, mode_t mode);
int __wrap_open(const char* path, int flags, mode_t mode);
int __wrap_open(const char* path, int flags, mode_t mode) {
  return no_file() ? -1 : __real_open(path, flags, mode);
}

ssize_t __real_process_vm_writev(pid_t process, const iovec* from, unsigned long n, const iovec* to,
                                 unsigned long n_to, unsigned long flags);
ssize_t __wrap_process_vm_writev(pid_t process, const iovec* from, unsigned long n, const iovec* to,
                                 unsigned long n_to, unsigned long flags);
ssize_t __wrap_process_vm_writev(pid_t process, const iovec* from, unsigned long n, const iovec* to,
                                 unsigned long n_to, unsigned long flags) {
  const iovec part{from->iov_base, moved_size(from->iov_len)};
  return no_file() ? -1 : __real_process_vm_writev(process, &part, n, to, n_to, flags);
}

// Closing tells of a late failure; the file is closed all the same.

int __real_close(int file);
int __wrap_close(int file);
int __wrap_close(int file) {
  const int status = __real_close(file);
  return no_file() ? -1 : status;
}

int __real_fclose(FILE* file);
int __wrap_fclose(FILE* file);
int __wrap_fclose(FILE* file) {
  const int status = __real_fclose(file);
  return no_file() ? EOF : status;
}
}
// NOLINTEND(bugprone-reserved-identifier)

// Replaced for the whole program, the standard library included.

void* operator new(size_t size) {
  if (void* const block = malloc(size > 0 ? size : 1)) return block;
  throw std::bad_alloc();
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return malloc(size > 0 ? size : 1);
}
void* operator new(size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<size_t>(alignment);
  if (void* const block = aligned_alloc(unit, (size + unit - 1) / unit * unit)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
  free(block);
}
void operator delete(void* block, size_t) noexcept {
  free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  free(block);
}
void operator delete(void* block, size_t, std::align_val_t) noexcept {
  free(block);
}
