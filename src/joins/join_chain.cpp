// A chain of inner joins written out as a tree: a row for each node, depth first.
//
// Two passes. The first one sizes the subtrees from the last level up: all rows with one key have
// the same children, so a size for each key of each level is all there is, however large the tree.
// The second one writes each root's subtree to where the sizes say it begins; workers share the
// roots. A node's children are walked by an explicit stack, as deep as the chain is long.
#include "joins/join_chain.h"

#include <limits.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "search/compiler_steps.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

int ValMaxJoinChain = 16;
int ValMaxTreeQualify = 16;

int mpp_join_chain(void* block) {
  return run_pool_step(block);
}

int TTableCollection::SetMaxJoinChain(int n) {
  constexpr int kLeast = 16;
  // Deliberate: a number that is refused sets the limits free.
  ValMaxJoinChain = ValMaxTreeQualify = QX_MAX_CHAIN;
  if (n < kLeast || n > QX_MAX_CHAIN) {
    return report("SetMaxJoinChain", QX_ERROR_PARAMETER, "Invalid Parameter : MaxJoinChain(%d)", n);
  }
  ValMaxJoinChain = ValMaxTreeQualify = n;
  return 0;
}

namespace {

constexpr char kLayer[] = "RealizeJoinChain";
constexpr long kTooLarge = INT_MAX;  // sizes from here on are all the same

long limited(long size) {
  return std::min(size, kTooLarge);
}

/// The values of an integer column by row.
struct Association {
  const int* pv;
  const int* values;
};

/// What leads from the rows of one level to those of the next.
struct ChainLink {
  const TJoinTable* join;
  KeyNumbers key;
  const int* runs;                 // start of each key among `children`
  const int* children;             // rows of the next level, by key
  std::vector<bool> has_children;  // by row of this level
  Block<int> below;                // by key: nodes below a row with that key, limited
};

class JoinChain {
 public:
  JoinChain(const TTableCollection& tables, const ChainRequest& request);

  /// Nodes in all. Throws QX_ERROR_ROW_SIZE for more than a table can have.
  int CalcTreeSize();
  /// The columns of the tree: depth, row number, associations.
  std::vector<Block<int>> BuildTree(int size) const;

 private:
  /// Children of a node that are still to be written.
  struct Pending {
    const int* next;
    const int* end;
  };

  const TJoinTable& chain_join(const TTableCollection& tables, int index, int id) const;
  void add_root_level(const TJoinTable& join);
  void add_level(const TRealTable& table);
  void add_link(const TJoinTable& join, int index);
  void size_subtrees(size_t level);
  int children_key(size_t level, int row) const;
  long subtree(size_t level, int row) const;
  Pending children(size_t level, int row) const;
  void put1Data(std::vector<Block<int>>& columns, int row, size_t level, int pos) const;
  /// Writes a root and all below it from `pos` on.
  void BuildTree2(std::vector<Block<int>>& columns, int root, int pos) const;

  const ChainRequest& request_;
  const TSetArray* roots_ = nullptr;
  std::vector<ChainLink> links_;                                      // between levels
  std::vector<std::array<Association, QX_MAX_ASSOCIATION>> columns_;  // of each level
};

JoinChain::JoinChain(const TTableCollection& tables, const ChainRequest& request)
    : request_(request) {
  for (int i = 0; i < ValMaxJoinChain && request.joins[i] >= 1; ++i) {
    const TJoinTable& join = chain_join(tables, i, request.joins[i]);
    if (i == 0) add_root_level(join);
    add_link(join, i);
  }
  if (!links_.empty()) return;
  throw CQXException(
      report(kLayer, QX_ERROR_NO_TABLE, "No Such JTableIDs[%d]: %d ", 0, request.joins[0]));
}

const TJoinTable& JoinChain::chain_join(const TTableCollection& tables, int index, int id) const {
  const TBaseTable* const table = tables.find(id);
  if (table == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_TABLE, "No Such JTableIDs[%d]: %d ", index, id));
  }
  if (table->GetType() != TableKind::kJoin) {
    throw CQXException(report(kLayer, QX_ERROR_NOT_JOIN_SOURCE, "Illegal table type ( Not JOIN )"));
  }
  const auto& join = static_cast<const TJoinTable&>(*table);
  if (join.is_outer()) {
    throw CQXException(
        report(kLayer, QX_ERROR_NOT_INNER_JOIN, "Illegal table type ( Not INNER JOIN )"));
  }
  if (!links_.empty() &&
      &join.parent(QX_JOIN_MASTER) != &links_.back().join->parent(QX_JOIN_SLAVE)) {
    throw CQXException(report(kLayer, QX_ERROR_NOT_CHAIN, "Illegal chain type ( Not JOIN CHAIN )"));
  }
  return join;
}

/// The integer columns of a level's table.
void JoinChain::add_level(const TRealTable& table) {
  auto& level = columns_.emplace_back();
  for (int j = 0; j < request_.associations; ++j) {
    const auto place = static_cast<size_t>(j);
    const int id = request_.filters[columns_.size() - 1][j];
    const int position = table.FilterID2Pos(id);
    if (position < 0) {
      throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", id));
    }
    const TFilter& filter = *table.filter_at(position);
    if (filter.VL->GetDataType() != QX_DT_INTEGER) {
      throw CQXException(report(kLayer, QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )"));
    }
    const auto& values = static_cast<const TIntArray&>(*filter.VL);
    level[place] = {std::as_const(*filter.PVL).PIntAr(), values.PIntAr()};
  }
}

void JoinChain::add_root_level(const TJoinTable& join) {
  TRealTable& master = join.parent(QX_JOIN_MASTER);
  const int set = join.parent_set(QX_JOIN_MASTER);
  roots_ = master.GetSet(set);
  if (roots_ == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_JOIN_SET, "No Such Set(Master): %d", set));
  }
  master.CheckMergeFilterTVL(true);
  add_level(master);
  request_.tables[0] = master.id();
}

void JoinChain::add_link(const TJoinTable& join, int index) {
  TRealTable& slave = join.parent(QX_JOIN_SLAVE);
  const int set = join.parent_set(QX_JOIN_SLAVE);
  if (slave.GetSet(set) == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_SLAVE_SET, "No Such Set(Slave): %d", set));
  }
  slave.CheckMergeFilterTVL(true);
  add_level(slave);
  request_.tables[index + 1] = slave.id();
  request_.sets[QX_JOIN_MASTER][index] = join.parent_set(QX_JOIN_MASTER);
  request_.sets[QX_JOIN_SLAVE][index] = set;

  const JoinSet& first = join.first_set();
  ChainLink& link = links_.emplace_back();
  link.join = &join;
  link.key = join.key().side(QX_JOIN_MASTER);
  link.runs = std::as_const(*first.index[QX_JOIN_SLAVE]).PIntAr();
  link.children = std::as_const(*first.rows[QX_JOIN_SLAVE]).PIntAr();
  link.has_children.resize(static_cast<size_t>(join.parent(QX_JOIN_MASTER).TotalRecs()) + 1);
  const TSetArray& parents = *first.rows[QX_JOIN_MASTER];
  for (int i = 0; i < parents.FArraySize; ++i) {
    link.has_children[static_cast<size_t>(parents.PIntAr()[i])] = true;
  }
}

/// Key number of a row, or below 0 if it has no children.
int JoinChain::children_key(size_t level, int row) const {
  if (level >= links_.size()) return -1;
  const ChainLink& link = links_[level];
  return link.has_children[static_cast<size_t>(row)] ? link.key(row) : -1;
}

long JoinChain::subtree(size_t level, int row) const {
  const int key = children_key(level, row);
  return key < 0 ? 1 : 1L + links_[level].below[key];
}

void JoinChain::size_subtrees(size_t level) {
  ChainLink& link = links_[level];
  const int keys = link.join->key().size();
  link.below = make_block<int>(keys);
  const int workers = compile_workers(keys, true);
  run_step(QX_MPP_JOIN_CHAIN, workers, [&](int worker) {
    const Slice slice = even_slice(keys, workers, worker);
    for (long key = slice.begin; key < slice.end; ++key) {
      long size = 0;
      for (int i = link.runs[key]; i < link.runs[key + 1] && size < kTooLarge; ++i) {
        size += subtree(level + 1, link.children[i]);
      }
      link.below[key] = static_cast<int>(limited(size));
    }
  });
}

int JoinChain::CalcTreeSize() {
  for (size_t level = links_.size(); level-- > 0;) size_subtrees(level);
  long size = 0;
  for (int i = 0; i < roots_->FArraySize; ++i) {
    size = limited(size + subtree(0, roots_->PIntAr()[i]));
  }
  if (size < kTooLarge) return static_cast<int>(size);
  throw CQXException(report(kLayer, QX_ERROR_ROW_SIZE, "RowSize overflow"));
}

JoinChain::Pending JoinChain::children(size_t level, int row) const {
  const int key = children_key(level, row);
  if (key < 0) return {nullptr, nullptr};
  const ChainLink& link = links_[level];
  return {link.children + link.runs[key], link.children + link.runs[key + 1]};
}

void JoinChain::put1Data(std::vector<Block<int>>& columns, int row, size_t level, int pos) const {
  columns[0][pos] = static_cast<int>(level);
  columns[1][pos] = row;
  for (size_t j = 0; j + 2 < columns.size(); ++j) {
    const Association& own = columns_[level][j];
    columns[j + 2][pos] = own.values[own.pv[row]];
  }
}

void JoinChain::BuildTree2(std::vector<Block<int>>& columns, int root, int pos) const {
  std::vector<Pending> stack;
  stack.reserve(links_.size() + 1);
  put1Data(columns, root, 0, pos++);
  stack.push_back(children(0, root));
  while (!stack.empty()) {
    Pending& pending = stack.back();
    if (pending.next == pending.end) {
      stack.pop_back();
      continue;
    }
    const int row = *pending.next++;
    const size_t level = stack.size();
    put1Data(columns, row, level, pos++);
    const Pending further = children(level, row);
    if (further.next != further.end) stack.push_back(further);
  }
}

std::vector<Block<int>> JoinChain::BuildTree(int size) const {
  std::vector<Block<int>> columns;
  for (int i = 0; i < 2 + request_.associations; ++i) columns.push_back(make_block<int>(size));
  const int count = roots_->FArraySize;
  std::vector<int> starts(static_cast<size_t>(count));
  int start = 0;
  for (int i = 0; i < count; ++i) {
    starts[static_cast<size_t>(i)] = start;
    start += static_cast<int>(subtree(0, roots_->PIntAr()[i]));
  }
  const int workers = std::clamp(compile_workers(size, true), 1, std::max(count, 1));
  run_step(QX_MPP_JOIN_CHAIN, workers, [&](int worker) {
    // The roots whose subtrees begin in the worker's share of the tree.
    const Slice slice = even_slice(size, workers, worker);
    const auto first = std::lower_bound(starts.begin(), starts.end(), slice.begin);
    const auto last = std::lower_bound(first, starts.end(), slice.end);
    for (auto start_of = first; start_of != last; ++start_of) {
      BuildTree2(columns, roots_->PIntAr()[start_of - starts.begin()], *start_of);
    }
  });
  return columns;
}

}  // namespace

int TTableCollection::RealizeJoinChain(const char* name, const ChainRequest& request) {
  if (count() >= kMaxTables) return report(kLayer, QX_ERROR_TABLE_COUNT, "TableCount overflow");
  char unique[TBaseTable::kNameSize];
  if (name == nullptr || *name == '\0' || GenTableName(name, unique) < 0) {
    return report(kLayer, QX_ERROR_CHAIN_NAME, "Invalid Parameter : ChainTblName(%s)",
                  name == nullptr ? "" : name);
  }
  if (request.associations < 0 || request.associations > QX_MAX_ASSOCIATION) {
    return report(kLayer, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : nAssociation(%d)",
                  request.associations);
  }
  JoinChain chain(*this, request);
  const int size = chain.CalcTreeSize();
  const std::vector<Block<int>> columns = chain.BuildTree(size);
  auto tree = std::make_unique<TRealTable>(issue_table_id(), unique, size);
  for (size_t i = 0; i < columns.size(); ++i) {
    const std::string seed = i == 0 ? "depth" : i == 1 ? "RecNo" : "data_" + std::to_string(i - 2);
    raised(tree->AddFilter2(tree->GetNFilter(), seed.c_str(), QX_DT_INTEGER, size, sizeof(int),
                            columns[i].get()));
  }
  return adopt_table(std::move(tree));
}

}  // namespace qxe
