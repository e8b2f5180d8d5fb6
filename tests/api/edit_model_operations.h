// What the random hands can do.
#pragma once

#include "edit_model.h"

namespace qxe::test {

/// Row editing.
std::vector<EditOperation> edits();
/// What makes sets.
std::vector<EditOperation> selections();
/// Rows written from files.
std::vector<EditOperation> appends();
/// Tables made of others, and value lists condensed.
std::vector<EditOperation> table_derivations();
/// Copies of columns, in the same type and in others.
std::vector<EditOperation> column_derivations();

}  // namespace qxe::test
