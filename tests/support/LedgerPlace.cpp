#include "support/LedgerPlace.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>
#ifdef TSV_LIBPQ
#include <libpq-fe.h>
#endif

namespace tsv::test {
namespace {

std::string& Server() {
  static std::string address = [] {
    const char* given = std::getenv("TSV_SERVIDOR");
    return std::string(given ? given : "");
  }();
  return address;
}

#ifdef TSV_LIBPQ
void OnServerDo(const std::string& address, const std::string& sql) {
  PGconn* connection = PQconnectdb(address.c_str());
  PQsetNoticeProcessor(
      connection, [](void*, const char*) {}, nullptr);
  PGresult* result = PQexec(connection, sql.c_str());
  const bool done = PQresultStatus(result) == PGRES_COMMAND_OK || PQresultStatus(result) == PGRES_TUPLES_OK;
  const std::string problem = PQerrorMessage(connection);
  PQclear(result);
  PQfinish(connection);
  if (!done) throw std::runtime_error(problem);
}
#else
void OnServerDo(const std::string&, const std::string&) { throw std::runtime_error("built without libpq"); }
#endif

// The server's address with another database: postgresql://user@host/database?more
std::string WithDatabase(std::string address, const std::string& database) {
  const std::size_t begin = address.find('/', std::string_view("postgresql://").size()) + 1;
  return address.replace(begin, std::min(address.find('?'), address.size()) - begin, database);
}

// Fills each table with the rows of its copy. The copies know neither keys nor relationships.
constexpr const char* kRefill = R"sql(
DO $$
DECLARE
  nome text;
  colunas text;
BEGIN
  SET LOCAL session_replication_role = replica;
  FOR nome IN SELECT relname FROM pg_class WHERE relnamespace = 'primeiro'::regnamespace AND relkind = 'r' LOOP
    SELECT string_agg(quote_ident(attname), ', ') INTO colunas FROM pg_attribute
    WHERE attrelid = format('tesovia.%I', nome)::regclass AND attnum > 0 AND NOT attisdropped AND attgenerated = '';
    EXECUTE format('DELETE FROM tesovia.%1$I; INSERT INTO tesovia.%1$I (%2$s) SELECT %2$s FROM primeiro.%1$I', nome,
                   colunas);
  END LOOP;
END $$)sql";

constexpr const char* kCopy = R"sql(
DO $$
DECLARE
  nome text;
BEGIN
  DROP SCHEMA IF EXISTS primeiro CASCADE;
  CREATE SCHEMA primeiro;
  FOR nome IN SELECT relname FROM pg_class WHERE relnamespace = 'tesovia'::regnamespace AND relkind = 'r' LOOP
    EXECUTE format('CREATE TABLE primeiro.%1$I AS TABLE tesovia.%1$I', nome);
  END LOOP;
END $$)sql";

}  // namespace

bool LedgerPlace::OnServer() { return !Server().empty(); }

std::string LedgerPlace::UseServer(std::string address) { return std::exchange(Server(), std::move(address)); }

LedgerPlace::LedgerPlace() : path_(folder_.Path("ledger.tsv")) {
  if (!OnServer()) return;
  static std::atomic<int> count = 0;
  database_ = "livro_" + std::to_string(getpid()) + "_" + std::to_string(++count);
  path_ = WithDatabase(Server(), database_);
  // Of a locale that has its own ideas of case and order.
  OnServerDo(Server(),
             "CREATE DATABASE " + database_ +
                 " TEMPLATE template0 ENCODING 'UTF8' LOCALE 'C.UTF-8' LOCALE_PROVIDER icu ICU_LOCALE 'pt-BR'");
}

LedgerPlace::~LedgerPlace() {
  if (!OnServer()) return;
  try {
    OnServerDo(Server(), "DROP DATABASE " + database_ + " WITH (FORCE)");
  } catch (const std::runtime_error&) {
    // The whole server goes soon.
  }
}

void LedgerPlace::Keep() const {
  if (OnServer()) return OnServerDo(path_, kCopy);
  std::filesystem::copy_file(path_, path_ + ".first", std::filesystem::copy_options::overwrite_existing);
}

void LedgerPlace::Restore() const {
  if (OnServer()) return OnServerDo(path_, kRefill);
  for (const char* rest : {"-wal", "-shm"}) std::filesystem::remove(path_ + rest);
  std::filesystem::copy_file(path_ + ".first", path_, std::filesystem::copy_options::overwrite_existing);
}

}  // namespace tsv::test
