// All parallel tasks, in the order of their numbers. One list makes the enum, the forward
// declarations and the table, so that they cannot drift. A row is `task` with its function, or
// `unused` while it has none; such a row is never started.
#pragma once

// One row a line: the formatter would break them up.
// clang-format off
#define RQX_TASKS(task, unused) \
  unused(QX_MPP_DUMMY, "Dummy") \
  task(QX_MPP_IMPORT_PARSE, "Parallel Import Step1", mpp_import_step1) \
  task(QX_MPP_IMPORT_MERGE, "Parallel Import Step2", mpp_import_step2) \
  task(QX_MPP_EXPORT, "Parallel Export ", mpp_export_createCsv) \
  task(QX_MPP_SINGLE_SORT_COUNTUP, "Parallel Single Sort CountUp", mpp_single_sort_countup) \
  task(QX_MPP_SINGLE_SORT_TRANSFER, "Parallel Single Sort Transfer", mpp_single_sort_transfer) \
  task(QX_MPP_MULTI_SORT_COUNTUP, "Parallel Multi Sort CountUp", mpp_multi_sort_countup) \
  task(QX_MPP_MULTI_SORT_TRANSFER, "Parallel Multi Sort Transfer", mpp_multi_sort_transfer) \
  unused(QX_MPP_SORT_STEP1, "Parallel Sort by 1 Step ") \
  task(QX_MPP_SORT_STEP2, "Parallel Multi Sort by 2 Step", mpp_sort_2step) \
  unused(QX_MPP_SORT_STEP3, "Parallel Multi Sort by 3 Step") \
  unused(QX_MPP_SEARCH, "Parallel Search ") \
  task(QX_MPP_COMBINE_REALTABLE, "Parallel Combine RealTable ", mpp_combine_realtables) \
  task(QX_MPP_EXTRACT_REALTABLE, "Parallel Extract RealTable ", mpp_extract_realtables) \
  task(QX_MPP_REALIZE_JOINTABLE, "Parallel Realize JoinTable ", mpp_realize_jointable) \
  task(QX_MPP_TOBITMAP, "Parallel Bitmap Setting ", mpp_tobitmap) \
  task(QX_MPP_MERGE_LIST, "Parallel Merge ", mpp_merge_list) \
  task(QX_MPP_COMPILE, "Parallel Compile ", mpp_compile) \
  task(QX_MPP_TYPECONV, "Parallel Type Conversion", mpp_type_conversion) \
  unused(QX_MPP_INTEGRATED_CALC, "Parallel Integrated Calc") \
  unused(QX_MPP_CALC, "Parallel Calc") \
  unused(QX_MPP_ITEM_TRANSFER, "Parallel Item Transfer") \
  unused(QX_MPP_ADD_CATEGORY, "Parallel AddCategory") \
  task(QX_MPP_MOVE_REC, "Parallel MoveRecForScan", mpp_move_rec) \
  task(QX_MPP_JOIN_INOUT, "Parallel JoinInOut", mpp_join_inout) \
  task(QX_MPP_JOIN_CHAIN, "Parallel Join Chain", mpp_join_chain) \
  task(QX_MPP_SEARCH_HELPER, "Parallel Search Helper function", mpp_search_helper) \
  task(QX_MPP_SEARCH_NVALUES, "Parallel Search NValuesfunction", mpp_search_nvalues) \
  unused(QX_MPP_SUMMARY_MEASURE, "Parallel Summary Measure") \
  unused(QX_MPP_SUMMARY_UNIQUE, "Parallel Summary Unique") \
  task(QX_MPP_TXT_PARSE, "Parallel Text Parser", mpp_text_parser) \
  task(QX_MPP_EXTRACT_UNIQUE, "Parallel Extract Unique", mpp_extract_unique) \
  task(QX_MPP_FLAG_SET, "Parallel Flag  setting", mpp_flag_set) \
  task(QX_MPP_JOIN_CUTUNUSE, "Parallel Flag  setting", mpp_join_cutunuse) \
  task(QX_MPP_CONDENSE_REALTABLE, "Parallel Condense RealTable", mpp_condense_realtable) \
  task(QX_MPP_DUPLICATE_REALTABLE, "Parallel Duplicate RealTable", mpp_duplicate_realtable) \
  task(QX_MPP_MEMCPY, "Parallel Memcpy", mpp_memcpy) \
  task(QX_MPP_RENUMBER, "Parallel Renumber after Merge ", mpp_renumber) \
  unused(QX_MPP_CATEGORIZE, "Parallel Categorize ") \
  task(QX_MPP_MEMSET, "Parallel Memset", mpp_memset) \
  task(QX_MPP_SINGLE_SORT_N_FILTER_COUNTUP, "Parallel Multi Sort NFilter CountUp", mpp_single_sort_n_filter_countup) \
  task(QX_MPP_SINGLE_SORT_N_FILTER_TRANSFER, "Parallel Multi Sort NFilter Transfer", mpp_single_sort_n_filter_transfer) \
  task(QX_MPP_MULTI_SORT_N_FILTER_COUNTUP, "Parallel Multi Sort NFilter CountUp", mpp_multi_sort_n_filter_countup) \
  task(QX_MPP_MULTI_SORT_N_FILTER_TRANSFER, "Parallel Multi Sort NFilter Transfer", mpp_multi_sort_n_filter_transfer) \
  task(QX_MPP_SORT_N_FILTER_STEP2, "Parallel Multi Sort NFilter CountUp", mpp_sort_n_filter_2step) \
  task(QX_MPP_SORT_N_FILTER_STEP3, "Parallel Multi Sort NFilter Transfer", mpp_sort_n_filter_3step) \
  task(QX_MPP_RENUMBER_VLORD, "Parallel VLORD Renumber", mpp_renumber_vlord) \
  task(QX_MPP_CUBESUM_MEASURE_STEP1, "Parallel CubeSum Measure Step1", mpp_cubesum_measure_step1) \
  task(QX_MPP_CUBESUM_MEASURE_STEP2, "Parallel CubeSum Measure Step2", mpp_cubesum_measure_step2) \
  unused(QX_MPP_CUBESUM_CELLADDR_CALC, "Parallel FastNonCubeSum CellAddr Calc") \
  unused(QX_MPP_CUBESUM_COUNTARR, "Parallel FastNonCubeSum CellAddr Calc") \
  task(QX_MPP_FAST_CUBESUM_MEASURE_STEP1, "Parallel CubeSum Measure Step1", mpp_fastcubesum_measure_step1) \
  task(QX_MPP_MULTI_HALFSORT_COUNTUP, "Parallel Multi HalfSort CountUp", mpp_multi_halfsort_countup) \
  task(QX_MPP_MULTI_HALFSORT_TRANSFER, "Parallel Multi HalfSort Transfer", mpp_multi_halfsort_transfer) \
  unused(QX_MPP_FASTNONCUBESUM_CELLADDR_CALC, "Parallel FastNonCubeSum CellAddr Calc") \
  unused(QX_MPP_FASTNONCUBESUM_RENUMBER, "Parallel FastNonCubeSum CellAddr Calc") \
  unused(QX_MPP_FASTNONCUBESUM_MEASURE, "Parallel FastNonCubeSum Measure") \
  task(QX_MPP_JOIN_SUMMARY_MEASURE, "Parallel Summary Measure", mpp_join_summary_measure) \
  task(QX_MPP_JOIN_SUMMARY_ADD_DIMENSION_FILTER, "Parallel Summary Dimension addition", mpp_join_summary_add_dimension_filter) \
  unused(QX_MPP_SINGLE_JOINKEY_SORT_TRANSFER, "Parallel Single JoinKey Sort Transfer") \
  unused(QX_MPP_MULTI_CELLADDR_SORT_COUNTUP, "Parallel Multi Sort CountUp") \
  unused(QX_MPP_MULTI_CELLSORT_SORT_TRANSFER, "Parallel Multi Sort Transfer") \
  unused(QX_MPP_CELLADDR_SORT_STEP2, "Parallel Multi Sort by 2 Step") \
  task(QX_MPP_JOIN_SETUP_AGGR, "Parallel join setup Aggr", mpp_join_setup_aggr) \
  task(QX_MPP_JOIN_UNIQUE, "Parallel Join Unique", mpp_join_unique) \
  unused(QX_MPP_JOIN_MERGE_LIST, "Parallel Join Merge ") \
  task(QX_MPP_COUNTUP_STEP1, "Parallel CountUp Step1", mpp_countup_step1) \
  unused(QX_MPP_COUNTUP_STEP2, "Parallel CountUp Step2") \
  task(QX_MPP_NONCUBE_MEASURE_FINIT, "Parallel Fast Summary Measure Finit", mpp_noncube_measure_finit) \
  task(QX_MPP_NONCUBE_MEASURE, "Parallel Fast Summary Measure2", mpp_noncube_measure) \
  unused(QX_MPP_SINGLE_CELLADDR_SORT_COUNTUP, "Parallel Single CellSort countup") \
  unused(QX_MPP_SINGLE_CELLSORT_SORT_TRANSFER, "Parallel Parallel Single CellSort transfer")
// clang-format on
