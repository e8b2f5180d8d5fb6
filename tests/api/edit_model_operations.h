// What the random hands can do.
#pragma once

#include "edit_model.h"

namespace qxe::test {

/// Row editing.
std::vector<EditOperation> edits();
/// What makes sets.
std::vector<EditOperation> selections();
/// Find cursors, and rows looked up in sets.
std::vector<EditOperation> finds();
/// Rows written from files.
std::vector<EditOperation> appends();
/// Tables made of others, and value lists condensed.
std::vector<EditOperation> table_derivations();
/// Copies of columns, in the same type and in others.
std::vector<EditOperation> column_derivations();

/// An operator code that a search (with QX_OPE_ISNULL) or a find cursor (without) takes.
int any_operator(EditModel& model, int type, bool with_null);
/// A value to search for; of a text, for operators that look for parts of texts, mostly a part.
Cell any_bound(EditModel& model, const Column& column, int ope);

}  // namespace qxe::test
