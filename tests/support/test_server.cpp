#include "support/test_server.h"

#include "adapters/odbc/odbc_database.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <random>
#include <stdexcept>

namespace qx {

std::string testServer() {
  if (const char* named = std::getenv("QXIMPORTJOB_TEST_ODBC"); named != nullptr && *named != '\0')
    return named;
  std::string text;
  if (const char* file = std::getenv("QXIMPORTJOB_TEST_SERVER"); file != nullptr) {
    std::ifstream stream(file);
    std::getline(stream, text);
  }
  if (text.empty())
    throw std::runtime_error("There is no database server for this test. Run it by ctest, or as "
                             "scripts/with-postgres.sh --fast PROGRAM.");
  return text;
}

TestSchema::TestSchema() : name_("test_" + std::to_string(std::random_device()())) {
  connectionString_ = testServer() + ";ConnSettings={Set search_path To " + name_ + "}";
  owner_ = OdbcDatabase().open(testServer());
  owner_->execute(sql("Create Schema "_sql, name(name_)));
}

TestSchema::~TestSchema() {
  const auto drop = [this] { owner_->execute(sql("Drop Schema "_sql, name(name_), " Cascade"_sql)); };
  try {
    try {
      drop();
    } catch (const StoreError&) {
      // A test may have cut the connection; the next statement opens it anew.
      drop();
    }
  } catch (const std::exception& error) {
    std::cerr << "The schema " << name_ << " is left: " << error.what() << '\n';
  }
}

} // namespace qx
