// The entry of a fuzz target: one input, any bytes. libFuzzer calls it with inputs that it makes
// up, the replay with those that are kept.
#pragma once

#include <stddef.h>
#include <stdint.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
