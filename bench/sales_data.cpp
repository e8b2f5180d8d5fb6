#include "sales_data.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace qxe::bench {

namespace {

uint64_t mixed(uint64_t x) {
  x += 0x9e3779b97f4a7c15;
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9;
  x = (x ^ (x >> 27)) * 0x94d049bb133111eb;
  return x ^ (x >> 31);
}

/// Random numbers of one field of one row.
class Draw {
 public:
  Draw(int field, long row)
      : bits_(mixed(static_cast<uint64_t>(row) * 64 + static_cast<uint64_t>(field))) {}
  int below(long limit) const { return static_cast<int>(bits_ % static_cast<uint64_t>(limit)); }
  double unit() const { return static_cast<double>(bits_ >> 11) * 0x1p-53; }

 private:
  uint64_t bits_;
};

enum Field {
  kDate,
  kTime,
  kStore,
  kProduct,
  kCustomer,
  kQuantity,
  kAmount,
  kPrice,
  kCity,
  kComment
};

/// A rank below `count` with weight 1 / (rank + 10).
int zipf_rank(double unit, int count) {
  return static_cast<int>(10 * std::pow((count + 10) / 10.0, unit) - 10);
}

/// A city's rank with weight 1 / (rank + 30)^0.8.
int city_rank(double unit) {
  const double low = std::pow(30.0, 0.2);
  const double high = std::pow(kCities + 30.0, 0.2);
  const int rank = static_cast<int>(std::pow(low + unit * (high - low), 5.0) - 30);
  return rank < kCities ? rank : kCities - 1;
}

constexpr std::array kRegions = {"North",   "South",    "East",    "West",    "Centre", "Coast",
                                 "Islands", "Highland", "Lowland", "Harbour", "Valley", "Capital"};
constexpr std::array kCityHeads = {"Kings", "Queens", "Bright", "Bar",  "Black",  "North", "South",
                                   "Green", "White",  "River",  "Lake", "Hill",   "Stone", "Oak",
                                   "Ash",   "Mill",   "New",    "Old",  "Bridge", "Wood"};
constexpr std::array kCityMiddles = {"a", "e", "i", "o", "u", "er", "en", "ing", "ly", "s"};
constexpr std::array kCityTails = {"ton", "ville", "burg", "ford", "field",
                                   "ham", "mouth", "port", "dale", "wick"};
constexpr std::array kWords = {"late",   "gift",  "order",  "quick", "paid",  "card",  "cash",
                               "return", "club",  "sale",   "promo", "staff", "phone", "store",
                               "mail",   "rush",  "repeat", "bulk",  "small", "large", "fresh",
                               "spare",  "extra", "home",   "away",  "early", "night", "week",
                               "month",  "local", "new",    "old",   "check"};

/// The date `days` after 2019/01/01.
std::string date_text(int days) {
  using namespace std::chrono;
  const year_month_day date{sys_days{year{2019} / 1 / 1} + std::chrono::days{days}};
  char text[16];
  snprintf(text, sizeof text, "%04d/%02u/%02u", static_cast<int>(date.year()),
           static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string comment_text(int key) {
  const Draw words(kComment + 1, key);
  const Draw tails(kComment + 2, key);
  const size_t count = kWords.size();
  char text[64];
  snprintf(text, sizeof text, "%s %s %s #%07X",
           kWords[static_cast<size_t>(words.below(static_cast<long>(count)))],
           kWords[static_cast<size_t>(words.below(static_cast<long>(count * count))) / count],
           kWords[static_cast<size_t>(tails.below(static_cast<long>(count)))],
           static_cast<unsigned>(key));
  return text;
}

/// A text file that is complete or not there: it gets its name when it is closed.
class NewFile {
 public:
  explicit NewFile(std::string name) : name_(std::move(name)), file_(fopen(part().c_str(), "w")) {
    if (file_ == nullptr) throw std::runtime_error("cannot write " + name_);
  }
  ~NewFile() {
    if (fclose(file_) == 0) std::filesystem::rename(part(), name_);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  FILE* get() const { return file_; }

 private:
  std::string part() const { return name_ + ".part"; }

  std::string name_;
  FILE* file_;
};

bool exists(const std::string& directory, const char* file) {
  return std::filesystem::exists(directory + "/" + file);
}

void write_catalog(const std::string& name, const char* columns) {
  NewFile catalog(name);
  fprintf(catalog.get(), "//CSV\n//UTF8\n//CUTTOP\n//ERROR\tCONTINUE\n%s", columns);
}

void write_sale(FILE* file, int row, long comment_keys) {
  const int time = 8 * 3600 + Draw(kTime, row).below(50400);
  const int product = zipf_rank(Draw(kProduct, row).unit(), kProducts) + 1;
  const Draw quantity(kQuantity, row);
  const double root = Draw(kAmount, row).unit();
  const int amount = static_cast<int>(root * root * 199999.0) + 1;
  const int base = 100 + Draw(kPrice, product).below(30000);
  const int price = Draw(kPrice, 1000000L + row).below(10) == 0 ? base * 9 / 10 : base;
  const int city = city_rank(Draw(kCity, row).unit());
  const int key = Draw(kComment, row).below(comment_keys);
  fprintf(file, "%d,%s,%02d:%02d:%02d,%d,%d,%d,", row,
          date_text(Draw(kDate, row).below(2000)).c_str(), time / 3600, time / 60 % 60, time % 60,
          Draw(kStore, row).below(500) + 1, product, Draw(kCustomer, row).below(kCustomers) + 1);
  if (quantity.below(50) != 0) fprintf(file, "%d", quantity.below(5000) / 50 + 1);
  fprintf(file, ",%d.%02d,%d.%02d,%s,%s,%s\n", amount / 100, amount % 100, price / 100, price % 100,
          kRegions[static_cast<size_t>(city) % kRegions.size()], city_name(city).c_str(),
          comment_text(key).c_str());
}

}  // namespace

std::string city_name(int city) {
  // Spread over the ranks, so that no head is rarer than another.
  const auto place = (static_cast<size_t>(city) * 1109 + 777) % kCities;
  return std::string(kCityHeads[place / 100]) + kCityMiddles[place / 10 % 10] +
         kCityTails[place % 10];
}

void write_sales(const std::string& directory, int rows) {
  if (exists(directory, "sales.csv")) return;
  write_catalog(directory + "/sales.cat",
                "I\t10\tsale_id\nD\t10\tsale_date\nT\t8\tsale_time\nI\t4\tstore_id\n"
                "I\t6\tproduct_id\nI\t8\tcustomer_id\nI\t4\tquantity\nF\t8\tamount\n"
                "N\t8\tprice\t2\nA\t10\tregion\nA\t20\tcity\nA\t40\tcomment\n");
  NewFile file(directory + "/sales.csv");
  fprintf(file.get(),
          "sale_id,sale_date,sale_time,store_id,product_id,customer_id,quantity,amount,price,"
          "region,city,comment\n");
  // So many keys that six rows in ten bring a comment of their own.
  const long comment_keys = static_cast<long>(rows / 1.127) + 1;
  for (int row = 1; row <= rows; ++row) write_sale(file.get(), row, comment_keys);
}

void write_products(const std::string& directory) {
  if (exists(directory, "products.csv")) return;
  write_catalog(directory + "/products.cat",
                "I\t6\tproduct_id\nA\t20\tproduct_name\nA\t20\tcategory\nA\t20\tbrand\n");
  NewFile file(directory + "/products.csv");
  fprintf(file.get(), "product_id,product_name,category,brand\n");
  for (int product = 1; product <= kProducts; ++product) {
    fprintf(file.get(), "%d,Product %05d,Category %02d,Brand %03d\n", product, product,
            Draw(20, product).below(40), Draw(21, product).below(800));
  }
}

void write_customers(const std::string& directory) {
  if (exists(directory, "customers.csv")) return;
  write_catalog(directory + "/customers.cat",
                "I\t8\tcustomer_id\nA\t20\tcust_name\nA\t10\tsegment\nD\t10\tbirth_date\n"
                "A\t20\thome_city\n");
  NewFile file(directory + "/customers.csv");
  fprintf(file.get(), "customer_id,cust_name,segment,birth_date,home_city\n");
  for (int customer = 1; customer <= kCustomers; ++customer) {
    if (customer % 97 == 0) continue;  // so that one sale in a hundred finds no customer
    const int name = Draw(22, customer).below(static_cast<long>(kCustomers));
    fprintf(file.get(), "%d,Name %07d,Segment %d,%s,%s\n", customer, name,
            Draw(23, customer).below(8), date_text(-Draw(24, customer).below(20000)).c_str(),
            city_name(Draw(25, customer).below(kCities)).c_str());
  }
}

}  // namespace qxe::bench
