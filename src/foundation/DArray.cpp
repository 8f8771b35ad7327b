#include "foundation/DArray.h"

#include "foundation/DString.h"
#include "foundation/DStringArray.h"

// The element types of the system, all members of each; the template itself is marked for export.
template class DArray<float, 0>;
template class DArray<DString, 1>;
template class DArray<int, 0>;
template class DArray<short, 0>;
template class DArray<unsigned char, 0>;
template class DArray<double, 0>;
template class DArray<long long, 0>;
template class DArray<bool, 0>;
template class DArray<void *, 0>;
template class DArray<DStringArray, 1>;
