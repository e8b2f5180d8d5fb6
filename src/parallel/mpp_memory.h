// Block copies and fills on the pool.
#pragma once

namespace qxe {

/// Copies `count` elements of `unit` bytes with up to `threads` workers.
void MppMemcpy(void* to, const void* from, int unit, unsigned long count, int threads);
/// Copies bytes with all workers; small blocks on the calling thread.
void MppMemCpy(void* to, const void* from, unsigned long bytes);
/// Fills bytes with all workers; small blocks on the calling thread.
void MppMemSet(void* to, int value, unsigned long bytes);
/// Writes first, first + 1, first + 2, ... with all workers; short runs on the calling thread.
void MppFillUp(int* to, int first, long count);

}  // namespace qxe
