// Exported functions: the file browser.

#include "frame/api/call_frame.h"
#include "frame/api/innerapi.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXBrowserGetCurrentDirectory(char* path) {
  return pass_through_call(__func__, {path},
                           [&] { return innerRQXBrowserGetCurrentDirectory(path); });
}

int RQXBrowserSetCurrentDirectory(const char* path) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserSetCurrentDirectory(path); });
}

int RQXBrowserMakeDirectory(const char* path) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserMakeDirectory(path); });
}

int RQXBrowserDelDirectory(const char* path, int recursive) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserDelDirectory(path, recursive); });
}

int RQXBrowserMove(const char* from, const char* to) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserMove(from, to); });
}

int RQXBrowserGetFileList(const char* pattern, int, int* count, int* total, char* names,
                          unsigned char* nameFlags) {
  const int capacity = count == nullptr || names == nullptr ? 0 : *count;
  return pass_through_call(__func__, {count, total, if_any(capacity, nameFlags)}, [&] {
    return innerRQXBrowserGetFileList(pattern, count, total, names, nameFlags);
  });
}

int RQXBrowserGetFileSize(const char* path) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserGetFileSize(path); });
}

int RQXBrowserGetFile(const char* path, int* position, int* length, void* buffer) {
  const int wanted = length == nullptr ? 0 : *length;
  return pass_through_call(__func__, {position, length, if_any(wanted, buffer)},
                           [&] { return innerRQXBrowserGetFile(path, position, length, buffer); });
}

int RQXBrowserGetFile64(const char* path, long* position, int* length, void* buffer) {
  const int wanted = length == nullptr ? 0 : *length;
  return pass_through_call(__func__, {position, length, if_any(wanted, buffer)}, [&] {
    return innerRQXBrowserGetFile64(path, position, length, buffer);
  });
}

int RQXBrowserGetFileEx(const char* path, int position, int* remaining, int* length, void* buffer) {
  const int wanted = length == nullptr ? 0 : *length;
  return pass_through_call(__func__, {remaining, length, if_any(wanted, buffer)}, [&] {
    return innerRQXBrowserGetFileEx(path, position, remaining, length, buffer);
  });
}

int RQXBrowserGetFileEx64(const char* path, long position, long* remaining, int* length,
                          void* buffer) {
  const int wanted = length == nullptr ? 0 : *length;
  return pass_through_call(__func__, {remaining, length, if_any(wanted, buffer)}, [&] {
    return innerRQXBrowserGetFileEx64(path, position, remaining, length, buffer);
  });
}

int RQXBrowserPutFile(const char* path, int length, const void* buffer) {
  return pass_through_call(__func__, {if_any(length, buffer)},
                           [&] { return innerRQXBrowserPutFile(path, length, buffer); });
}

int RQXBrowserPutFileEx(const char* path, int mode, int length, const void* buffer) {
  return pass_through_call(__func__, {if_any(length, buffer)},
                           [&] { return innerRQXBrowserPutFileEx(path, mode, length, buffer); });
}

int RQXBrowserDelFile(const char* path) {
  return pass_through_call(__func__, [&] { return innerRQXBrowserDelFile(path); });
}
