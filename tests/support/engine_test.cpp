#include "support/engine_test.h"

#include <stdio.h>

#include <algorithm>
#include <iostream>

#include "qxe.h"

namespace qxe::test {

std::vector<RingEntry> drain_ring() {
  std::vector<RingEntry> entries;
  int time = 0;
  int code = 0;
  char call[64] = "";
  char message[128] = "";
  while (RQXGetErrorLog(&time, call, &code, message) == 1) {
    entries.push_back({time, call, code, message});
  }
  return entries;
}

std::string hex(int code) {
  char text[16];
  snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(code));
  return text;
}

std::string to_text(const std::vector<RingEntry>& entries) {
  if (entries.empty()) return "the ring is empty\n";
  std::string text = "the ring:\n";
  for (const RingEntry& entry : entries) {
    text += "  " + hex(entry.code) + " " + entry.call + ": \"" + entry.message + "\"\n";
  }
  return text;
}

EngineTest::EngineTest() : working_directory_(directory_.path()) {
  RQXClearDB();
  RQXSetTailSpaceFlag(0);
  RQXSetKanjiCode(QX_LOCALE_UTF8);
  RQXSetSavedFlag(1, 1, 1);
  drain_ring();
}

EngineTest::~EngineTest() {
  if (HasFailure()) std::cout << to_text(drain_ring());
}

void EngineTest::expect_failure(int status, int code, const std::string& text, const char* file,
                                int line) {
  expect_failure_logged_as(status, code, code, text, file, line);
}

void EngineTest::expect_failure_logged_as(int status, int code, int logged, const std::string& text,
                                          const char* file, int line) {
  const std::vector<RingEntry> entries = drain_ring();
  if (status != code) {
    ADD_FAILURE_AT(file, line) << "status " << hex(status) << " instead of " << hex(code) << "; "
                               << to_text(entries);
  }
  const auto is_wanted = [&](const RingEntry& entry) {
    return entry.code == logged && entry.message.rfind(text, 0) == 0;
  };
  if (!text.empty() && std::none_of(entries.begin(), entries.end(), is_wanted)) {
    ADD_FAILURE_AT(file, line) << "no entry " << hex(logged) << " \"" << text << "\"; "
                               << to_text(entries);
  }
}

}  // namespace qxe::test
