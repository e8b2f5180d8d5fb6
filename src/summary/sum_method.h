// Which way RQXNonCubeSum takes.
#pragma once

namespace qxe {

enum class SumMethod : int {
  kCube = 0,              // a private cube for each worker
  kFastCube = 1,          // rows brought near to each other first
  kFastNonCube = 2,       // rows sorted, with the measures' value numbers beside them
  kFastNonCubeByRow = 3,  // rows sorted alone, when memory is short
  kNonCube = 4            // combinations that 30 bits cannot number
};

/// What the choice looks at.
struct SumWork {
  int bits = 0;      // of all dimensions together, each by ConvertFromVLtoBitsize of its list
  double cells = 1;  // combinations of values that can be
  int rows = 0;      // of the set
  int measures = 0;
  int flags = 0;  // of all measures
  int workers = 1;
  int l2_size = 0;                     // bytes
  unsigned long available_memory = 0;  // bytes

  void add_dimension(int list_length);
};

/// Bytes that a cube, a fast cube, or rows sorted with what belongs to them need by estimate,
/// besides the table that is made.
double estimated_bytes(const SumWork& work, SumMethod method);

SumMethod GetSuitableSumMethod(const SumWork& work);

}  // namespace qxe
