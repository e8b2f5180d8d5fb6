// Large runs of bytes into a file, past any buffer.
#pragma once

namespace qxe {

/// Writes `bytes` from `start` on, in the way that is fastest for the file's system. Returns false
/// when it cannot, as on a full device; part of the run may stand in the file then.
bool write_bulk_bytes(int file, long start, const char* data, long bytes);

}  // namespace qxe
