#pragma once

// Has the process keep freed memory for the next time instead of giving it back to the system at once. For programs
// that make and free the same large blocks over and over, a mesh at a time: each return costs a page fault a page when
// the block is made again, a sixth of a whole export. Once, before the first large allocation.
void KeepFreedMemory();
