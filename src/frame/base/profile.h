// Profile files: text of sections in brackets and `key=value` lines, looked for in the working
// directory. A missing file is a file without keys.
#pragma once

namespace qxe {

/// Value of `key` in `file` whatever its section, white space cut; empty when it is not there.
/// Keys and sections are matched exactly; of several equal keys the first one counts.
void getProfileString(const char* file, const char* key, char* buffer, int size);

/// Value of `key` in `[section]` of `file`, white space cut; `fallback` when it is not there.
void getPrivateProfileString(const char* section, const char* key, const char* fallback,
                             char* buffer, int size, const char* file);

}  // namespace qxe
