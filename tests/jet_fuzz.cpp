// Feeds random statements to the Jet front end and the embedded engine: walks of the grammar, some of them damaged.
// Usage: jet_fuzz SECONDS [SEED]. Every text must run or be refused with an engine's or a runtime error; an internal
// error (51) means that the compiler wrote SQL which the engine does not understand.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "support/EmptyLedger.h"
#include "support/Listed.h"
#include "types/Erro.h"

namespace {

class Walk {
 public:
  explicit Walk(std::uint64_t seed) : random_(seed) {}

  std::string Statement() {
    expanded_ = 0;
    const std::string text = Any("statement");
    return Pick(3) == 0 ? Damage(text) : text;
  }

 private:
  std::size_t Pick(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }

  // A form of this name in data/grammar.txt, where {name} stands for a form of that name and {} for nothing. The first
  // form is the shortest: large texts end with it.
  std::string Any(const std::string& name) {
    const auto [forms, isNew] = grammar_.try_emplace(name);
    if (isNew) forms->second = tsv::test::Listed("grammar.txt", name);
    std::string rest = forms->second[++expanded_ > kLargest ? 0 : Pick(forms->second.size())][0];
    std::string text;
    for (std::size_t at; (at = rest.find('{')) != std::string::npos; rest = rest.substr(rest.find('}') + 1)) {
      const std::string inner = rest.substr(at + 1, rest.find('}') - at - 1);
      text += rest.substr(0, at) + (inner.empty() ? "" : Any(inner));
    }
    return text + rest;
  }

  std::string Damage(std::string text) {
    static constexpr std::string_view kBytes = "'\"#[]()&-.,;*^\\ \t\x01\xc3\xff%SELECT0";
    for (std::size_t i = Pick(4) + 1; i > 0 && !text.empty(); --i) {
      const std::size_t at = Pick(text.size());
      switch (Pick(4)) {
        case 0:
          text.erase(at, Pick(8) + 1);
          break;
        case 1:
          text.insert(at, 1, kBytes[Pick(kBytes.size())]);
          break;
        case 2:
          text[at] = kBytes[Pick(kBytes.size())];
          break;
        default:
          text.insert(at, text.substr(Pick(text.size()), Pick(12)));
          break;
      }
    }
    return text;
  }

  static constexpr std::size_t kLargest = 20;

  std::mt19937_64 random_;
  std::size_t expanded_ = 0;
  std::map<std::string, std::vector<std::vector<std::string>>> grammar_;
};

// The tables of the listed SELECTs, with a few rows each.
void Fill(tsv::db::Database& database) {
  std::ifstream file(TSV_TEST_DATA "/selects.json");
  const nlohmann::json data = nlohmann::json::parse(file);
  for (const std::string sql : data["setup"]) database.Execute(sql);
}

}  // namespace

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 2;
  const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : std::random_device{}();
  std::cout << "seed " << seed << std::endl;
  Walk walk(seed);
  const tsv::test::EmptyLedger ledger;
  const auto database = ledger.Open();
  Fill(*database);
  std::map<std::int32_t, std::uint64_t> outcomes;
  std::uint64_t slow = 0;
  std::uint64_t broken = 0;
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  while (Clock::now() < end) {
    const std::string sql = walk.Statement();
    const auto began = Clock::now();
    std::int32_t number = 0;
    try {
      if (sql.starts_with("SELECT") || sql.starts_with("TRANSFORM")) {
        database->OpenRecordset(sql, tsv::db::dbOpenSnapshot, tsv::db::dbReadOnly);
      } else {
        database->Execute(sql, tsv::db::dbFailOnError);
      }
    } catch (const tsv::Erro& erro) {
      number = erro.Numero();
      if (number == static_cast<std::int32_t>(tsv::RuntimeError::Internal) && ++broken <= 20)
        std::cerr << "broken: " << erro.Descricao() << "\n  " << sql << std::endl;
    }
    ++outcomes[number];
    if (Clock::now() - began > std::chrono::seconds(2) && ++slow <= 5) std::cerr << "slow: " << sql << std::endl;
  }
  for (const auto& [number, count] : outcomes)
    std::cout << (number == 0 ? "ran" : "error " + std::to_string(number)) << ": " << count << "\n";
  std::cout << broken << " broken, " << slow << " slow" << std::endl;
  return broken == 0 && slow == 0 && outcomes[0] > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
