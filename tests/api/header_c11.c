/*
 * What compiled clients depend on: the public header is plain C, and its layouts stay.
 * There is nothing to run; a change that breaks a client does not compile.
 */
#include <limits.h>
#include <stddef.h>

#include "qxe.h"

#define LAYOUT(type, size, align)                           \
  _Static_assert(sizeof(type) == (size), "size of " #type); \
  _Static_assert(_Alignof(type) == (align), "alignment of " #type)
#define FIELD(type, field, offset) \
  _Static_assert(offsetof(type, field) == (offset), "place of " #field " in " #type)
#define VALUE(name, value) _Static_assert((name) == (value), #name)

LAYOUT(Numeric, 16, 8);
FIELD(Numeric, lo, 0);
FIELD(Numeric, hi, 8);

LAYOUT(NumericInfo, 8, 4);
FIELD(NumericInfo, scale, 0);
FIELD(NumericInfo, rounding, 4);

LAYOUT(_TTableInfo, 276, 4);
FIELD(_TTableInfo, id, 0);
FIELD(_TTableInfo, kind, 4);
FIELD(_TTableInfo, filterCount, 8);
FIELD(_TTableInfo, setCount, 12);
FIELD(_TTableInfo, totalRows, 16);
FIELD(_TTableInfo, name, 20);

LAYOUT(_TRFilterInfo, 284, 4);
FIELD(_TRFilterInfo, id, 0);
FIELD(_TRFilterInfo, type, 4);
FIELD(_TRFilterInfo, unitSize, 8);
FIELD(_TRFilterInfo, valueCount, 12);
FIELD(_TRFilterInfo, poolSize, 16);
FIELD(_TRFilterInfo, name, 20);

LAYOUT(_TSetDescript, 16, 8);
FIELD(_TSetDescript, count, 0);
FIELD(_TSetDescript, rows, 8);
LAYOUT(_TColumnBuf, 24, 8);
FIELD(_TColumnBuf, driving, 0);
FIELD(_TColumnBuf, type, 1);
FIELD(_TColumnBuf, filterId, 4);
FIELD(_TColumnBuf, count, 8);
FIELD(_TColumnBuf, values, 16);
LAYOUT(_TRFilterBody, 48, 8);
FIELD(_TRFilterBody, pvCapacity, 0);
FIELD(_TRFilterBody, pv, 8);
FIELD(_TRFilterBody, valueCapacity, 16);
FIELD(_TRFilterBody, values, 24);
FIELD(_TRFilterBody, poolCapacity, 32);
FIELD(_TRFilterBody, pool, 40);

LAYOUT(_TFilterInfo, 320, 8);
FIELD(_TFilterInfo, rowCount, 0);
FIELD(_TFilterInfo, pv, 8);
FIELD(_TFilterInfo, type, 16);
FIELD(_TFilterInfo, unitSize, 20);
FIELD(_TFilterInfo, valueCount, 24);
FIELD(_TFilterInfo, values, 32);
FIELD(_TFilterInfo, pool, 40);
FIELD(_TFilterInfo, name, 48);
FIELD(_TFilterInfo, orgTableId, 312);
FIELD(_TFilterInfo, orgFilterId, 316);

LAYOUT(_TREnvironment, 384, 4);
FIELD(_TREnvironment, hostName, 0);
FIELD(_TREnvironment, osType, 256);
FIELD(_TREnvironment, osMajor, 260);
FIELD(_TREnvironment, osMinor, 264);
FIELD(_TREnvironment, hardwareKind, 268);
FIELD(_TREnvironment, processorCount, 272);
FIELD(_TREnvironment, hardwareMinor, 276);
FIELD(_TREnvironment, endian, 280);
FIELD(_TREnvironment, wordSize, 284);
FIELD(_TREnvironment, reserved, 288);
FIELD(_TREnvironment, osCharCode, 320);
FIELD(_TREnvironment, dbCharCode, 352);

LAYOUT(_TDimensionDef, 32, 8);
FIELD(_TDimensionDef, FilterID, 0);
FIELD(_TDimensionDef, nCategory, 4);
FIELD(_TDimensionDef, piCatNo, 8);
FIELD(_TDimensionDef, ppCatName, 16);
FIELD(_TDimensionDef, pfnCatName, 24);
LAYOUT(_TRDimensionDef, 2072, 4);
FIELD(_TRDimensionDef, FilterID, 0);
LAYOUT(_TSumFilterAttr, 64, 4);
FIELD(_TSumFilterAttr, role, 1);
FIELD(_TSumFilterAttr, sumType, 2);
FIELD(_TSumFilterAttr, writer, 3);
FIELD(_TSumFilterAttr, ordinal, 5);
FIELD(_TSumFilterAttr, nDim, 6);
FIELD(_TSumFilterAttr, nMsrSoFar, 7);
FIELD(_TSumFilterAttr, sourceTable, 8);
FIELD(_TSumFilterAttr, sourceSet, 12);
FIELD(_TSumFilterAttr, sourceFilter, 16);

VALUE(sizeof(((_TTableInfo*)0)->name), 256);
VALUE(sizeof(((_TRFilterInfo*)0)->name), 264);
VALUE(sizeof(((_TFilterInfo*)0)->name), 264);
