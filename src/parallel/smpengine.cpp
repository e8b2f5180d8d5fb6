#include "parallel/smpengine.h"

#include <sys/sysinfo.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "calc/datetime.h"
#include "frame/base/profile.h"
#include "storage/charcode.h"
#include "storage/strings.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

// How long a round may take before the pool looks after its threads.
constexpr std::chrono::seconds kLostWorkerDeadline{5};

// About a tenth of a millisecond, the time between two steps of one operation.
constexpr int kSpinRounds = 2000;

/// Value of a key that must be a whole number above 0; anything else counts as absent.
int positive_setting(const char* key, int fallback) {
  char text[64];
  getPrivateProfileString("SYSINFO", key, "", text, sizeof text, "3by1sysinfo.ini");
  bool bad = false;
  const int value = Str2Int(text, true, &bad);
  return bad || value <= 0 ? fallback : value;
}

}  // namespace

CSmpEngine* ENG = nullptr;

CSmpEngine& CSmpEngine::Instance() {
  static CSmpEngine engine;
  return engine;
}

CSmpEngine::CSmpEngine() {
  const time_t now = time(nullptr);
  qxe_strlcpy(ENGINE_START_TIME, ctime(&now), sizeof ENGINE_START_TIME);
  localtime_r(&now, &start_time_);
  init();
}

CSmpEngine::~CSmpEngine() {
  finit();
  ENG = nullptr;
}

void CSmpEngine::init() {
  sysinfo();
  pool_ = started_pool();
  buildSystemHeader();
  renew_collection();
  char directory[400];
  if (getcwd(directory, sizeof directory) != nullptr) {
    snprintf(m_archLogFile, sizeof m_archLogFile, "%s/vemohist.log", directory);
  }
  setDefaultDateFormat();
  run_threads_ = created_threads_;
}

void CSmpEngine::finit() {
  notify_process_detach();
  collection_.reset();
  pool_.workers.clear();
}

void CSmpEngine::ReInitialize() {
  auto collection = std::make_unique<TTableCollection>();
  renew_workers();
  buildSystemHeader();
  collection_ = std::move(collection);
}

void CSmpEngine::sysinfo() {
  processors_ = positive_setting("RUNTHREADS", std::max(1, get_nprocs()));
  bytes_per_worker_ = getpagesize();
  l2_size_ = positive_setting("L2_CACHESIZE", l2_size_);
  l2_line_ = positive_setting("L2_LINESIZE", l2_line_);
  rows_per_worker_ = positive_setting("ROWS_PER_WORKER", static_cast<int>(rows_per_worker_));
  created_threads_ = processors_;
}

void CSmpEngine::setDefaultDateFormat() {
  char word[64];
  getProfileString("ZVK_Client.ini", "DATEFORMAT", word, sizeof word);
  date_format_ = date_order_from_word(word, date_format_);
}

void CSmpEngine::renew_collection() {
  renew_collection(std::make_unique<TTableCollection>());
}

void CSmpEngine::renew_collection(std::unique_ptr<TTableCollection> loaded) {
  collection_ = std::move(loaded);
}

WorkerPool CSmpEngine::started_pool() {
  WorkerPool pool;
  pool.workers.reserve(static_cast<size_t>(created_threads_));
  spin_ = SpinWait(created_threads_ <= get_nprocs() ? kSpinRounds : 0);
  try {
    for (int i = 0; i < created_threads_; ++i) {
      pool.workers.push_back(std::make_unique<CWorkThread>(i, pool.notice.get(), spin_));
    }
  } catch (...) {
    pool.stop();
    throw;
  }
  return pool;
}

void CSmpEngine::set_division(const WorkDivision& division) {
  run_threads_ = std::clamp(division.workers, 1, created_threads_);
  rows_per_worker_ = division.rows_per_worker;
  bytes_per_worker_ = division.bytes_per_worker;
  in_turn_ = division.in_turn;
}

int CSmpEngine::n_threads_for_elements(long elements, long perThread) const {
  if (run_threads_ * perThread <= elements) return std::max(run_threads_, 1);
  return static_cast<int>(std::max<long>((elements + perThread - 1) / perThread, 1));
}

int CSmpEngine::assign_elements_to_threads(int elements, int minimum) {
  int rest = std::max(elements, 0);
  const int share = std::max({(rest + run_threads_ - 1) / run_threads_, minimum, 1});
  int busy = 0;
  for (int i = 0; i < created_threads_; ++i) {
    const bool takes_rest = i == run_threads_ - 1 || share >= rest;
    const int count = takes_rest ? rest : share;
    get_thread_param(i).elements = count;
    rest -= count;
    if (count > 0) ++busy;
  }
  return busy;
}

void CSmpEngine::setup_task(int i, int task) {
  worker(i).setup_task(task);
}

void CSmpEngine::setup_task2(int n, int task) {
  for (int i = 0; i < n; ++i) setup_task(i, task);
}

void CSmpEngine::resume_wkthread(int i) {
  worker(i).resume();
}

void CSmpEngine::resume_wkthread(int i, int task) {
  worker(i).resume(task);
}

void CSmpEngine::resume_wkthreads(int n) {
  pool_.notice->finished.store(0, std::memory_order_relaxed);
  for (int i = 0; i < resolved_count(n); ++i) resume_wkthread(i);
}

void CSmpEngine::resume_wkthreads(int n, int task) {
  setup_task2(resolved_count(n), task);
  resume_wkthreads(n);
}

void CSmpEngine::wait_until_finish(int n) {
  const auto finished = [&] { return pool_.notice->finished.load(std::memory_order_acquire) >= n; };
  if (spin_.until(finished)) return;
  std::unique_lock<std::mutex> guard(pool_.notice->lock);
  // The deadline is not moved on: a round that outlives it polls its workers from then on.
  const auto deadline = std::chrono::steady_clock::now() + kLostWorkerDeadline;
  while (!finished()) {
    if (pool_.notice->changed.wait_until(guard, deadline) == std::cv_status::timeout) {
      guard.unlock();
      keep_all_threads_alive();
      guard.lock();
      pool_.notice->changed.wait_for(guard, std::chrono::milliseconds(1));
    }
  }
}

int CSmpEngine::get_wkthread_retcode(int i) const {
  if (i < 0 || i >= static_cast<int>(pool_.workers.size())) return QX_ERROR_UNKNOWN;
  return pool_.workers[static_cast<size_t>(i)]->result();
}

int CSmpEngine::get_wkthreads_retcode(int n) const {
  int result = 0;
  for (int i = 0; i < n; ++i) {
    result = get_wkthread_retcode(i);
    if (result < 0) return result;
  }
  return result;
}

void CSmpEngine::keep_all_threads_alive() {
  for (auto& worker : pool_.workers) worker->keep_alive();
}

int CSmpEngine::run_threads_task(int n, int task) {
  if (n < 1) return 0;
  CWorkThread& first = worker(0);
  if (in_turn_) {
    for (int i = 1; i < n; ++i) worker(i).run_on_caller(task);
    first.run_on_caller(task);
    return raised(get_wkthreads_retcode(n));
  }
  pool_.notice->finished.store(0, std::memory_order_relaxed);
  for (int i = 1; i < n; ++i) resume_wkthread(i, task);
  first.run_on_caller(task);
  wait_until_finish(n - 1);
  return raised(get_wkthreads_retcode(n));
}

CWorkThread& CSmpEngine::worker(int i) {
  if (forked_) renew_workers();
  return *pool_.workers.at(static_cast<size_t>(i));
}

void CSmpEngine::forget_workers() {
  forked_ = true;
}

void CSmpEngine::renew_workers() {
  WorkerPool pool = started_pool();  // the old one stays when the system refuses
  notify_process_detach();
  pool_ = std::move(pool);
  forked_ = false;
}

void CSmpEngine::notify_process_detach() {
  if (!forked_) pool_.stop();
}

void WorkerPool::stop() {
  for (auto& worker : workers) worker->resume(0);
  for (auto& worker : workers) worker->join();
}

}  // namespace qxe
