// The benchmark's tables as text files. Every field is a function of the row number, so that the
// same rows come out on every machine.
#pragma once

#include <string>

namespace qxe::bench {

constexpr int kProducts = 20000;
constexpr int kCustomers = 1000000;
constexpr int kCities = 2000;

/// Name of city 0 to kCities - 1.
std::string city_name(int city);

/// Writes sales.csv of `rows` rows and its catalog sales.cat into `directory`, unless they are
/// there already.
void write_sales(const std::string& directory, int rows);
/// The same for products (20,000 rows) and customers (about 1 M rows).
void write_products(const std::string& directory);
void write_customers(const std::string& directory);

}  // namespace qxe::bench
