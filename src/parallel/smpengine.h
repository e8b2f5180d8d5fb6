// The engine singleton: the worker pool, the error ring, the settings of the process and the one
// table collection.
#pragma once

#include <time.h>

#include <memory>
#include <mutex>
#include <vector>

#include "frame/base/error_ring.h"
#include "parallel/workthread.h"

namespace qxe {

class TTableCollection;

/// The workers and what they report to.
struct WorkerPool {
  std::unique_ptr<NOTIFY_HANDLE> notice = std::make_unique<NOTIFY_HANDLE>();
  std::vector<std::unique_ptr<CWorkThread>> workers;

  /// Ends all threads and waits for them.
  void stop();
};

/// How much work is worth waking a worker for, and how many of the pool's take part at most.
struct WorkDivision {
  int workers = 1;
  long rows_per_worker = 1;   // elements of cheap row work; see SlicedTask
  long bytes_per_worker = 1;  // of text to parse
  bool in_turn = false;       // the calling thread takes all shares of a round, one after the other
};

class CSmpEngine : NonCopyable {
 public:
  static CSmpEngine& Instance();

  // Start and stop.
  /// A failure throws and changes nothing.
  void ReInitialize();

  // Settings and parts.
  int run_threads() const { return run_threads_; }
  int created_threads() const { return created_threads_; }
  /// Elements of cheap row work that are worth waking a worker for; see SlicedTask.
  long rows_per_worker() const { return rows_per_worker_; }
  /// Bytes of text that are worth a worker's parsing.
  long bytes_per_worker() const { return bytes_per_worker_; }
  /// For tests that compare divisions: takes the place of the profile file's.
  void set_division(const WorkDivision& division);
  int l2_size() const { return l2_size_; }
  int l2_line() const { return l2_line_; }
  TTableCollection* collection() { return collection_.get(); }
  /// Replaces the collection by an empty one.
  void renew_collection();
  /// Replaces it by one that was loaded.
  void renew_collection(std::unique_ptr<TTableCollection> loaded);
  ErrorRing& error_ring() { return error_ring_; }
  int date_format() const { return date_format_; }
  const tm& start_time() const { return start_time_; }
  const char* archive_log_file() const { return m_archLogFile; }

  // Division of work.
  /// Workers for this much work: as many as have `perThread` elements each, at least one.
  int n_threads_for_elements(long elements, long perThread = 1) const;
  /// Writes each worker's element count into its block; returns how many have work.
  int assign_elements_to_threads(int elements, int minimum);

  // The pool.
  WorkerParam& get_thread_param(int i) { return worker(i).param(); }
  void setup_task(int i, int task);
  void setup_task2(int n, int task);
  void resume_wkthread(int i);
  void resume_wkthread(int i, int task);
  /// Workers 0 to n - 1; -1 means all run threads.
  void resume_wkthreads(int n);
  void resume_wkthreads(int n, int task);
  void wait_until_finish(int n);
  int get_wkthread_retcode(int i) const;
  /// The first negative result of workers 0 to n - 1, else the last result; 0 when n is below 1.
  int get_wkthreads_retcode(int n) const;
  void keep_all_threads_alive();
  /// One round: runs `task` on workers 0 to n - 1, the first of them on the calling thread, waits,
  /// and throws the first negative result.
  int run_threads_task(int n, int task);
  /// In a child process after fork(), which has no threads but its own: the pool is made anew
  /// before the next round.
  void forget_workers();
  /// Stops and joins all workers.
  void notify_process_detach();

  void mt_write_lock() { write_lock_.lock(); }
  void mt_write_unlock() { write_lock_.unlock(); }

 private:
  CSmpEngine();
  ~CSmpEngine();

  void init();
  void finit();
  void sysinfo();
  void setDefaultDateFormat();
  WorkerPool started_pool();
  void renew_workers();
  CWorkThread& worker(int i);
  int resolved_count(int n) const { return n == -1 ? run_threads_ : n; }

  std::mutex write_lock_;
  WorkerPool pool_;
  SpinWait spin_{0};
  bool forked_ = false;  // the workers' threads are in another process
  int run_threads_ = 1;
  int created_threads_ = 1;
  int processors_ = 1;
  int l1_size_ = 65536;
  int l1_line_ = 64;
  int l2_size_ = 1048576;
  int l2_line_ = 64;
  long rows_per_worker_ = 65536;
  long bytes_per_worker_ = 8192;  // a memory page
  bool in_turn_ = false;
  std::unique_ptr<TTableCollection> collection_;
  ErrorRing error_ring_;
  int date_format_ = 0;  // 0 year first, 1 day first, 2 month first
  tm start_time_{};
  char ENGINE_START_TIME[32] = "";
  char m_archLogFile[512] = "";
};

/// The engine; null only while the library loads or unloads.
extern CSmpEngine* ENG;

}  // namespace qxe
