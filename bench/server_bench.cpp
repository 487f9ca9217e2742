// Postings on a server, in one run: the library against a program written by hand for the same statements, prepared and
// pipelined, and against one function on the server; at the end of the ledger and back-dated over 100,000 entries.
// TSV_SERVIDOR holds the address of the server; each of the three has a database of its own, dropped at the end.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>

#include "Medians.h"
#include "SampleLedger.h"
#include "ServerFloor.h"
#include "tsvlib2.h"

namespace tsv::bench {
namespace {

constexpr std::int32_t kEntries = 200'000;

std::string Server() {
  const char* address = std::getenv("TSV_SERVIDOR");
  if (!address) throw std::runtime_error("TSV_SERVIDOR must hold the address of a server");
  return address;
}

// A database of its own.
class Scratch {
 public:
  explicit Scratch(const std::string& from = {})
      : name_("bench_" + std::to_string(getpid()) + "_" + std::to_string(++count_)) {
    Do("CREATE DATABASE " + name_ + (from.empty() ? "" : " TEMPLATE " + from));
    Do("CHECKPOINT");
  }
  ~Scratch() { Do("DROP DATABASE " + name_ + " WITH (FORCE)"); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::string& Name() const { return name_; }
  std::string Address() const {
    std::string address = Server();
    const std::size_t begin = address.find('/', std::string("postgresql://").size()) + 1;
    return address.replace(begin, std::min(address.find('?'), address.size()) - begin, name_);
  }

 private:
  static void Do(const std::string& sql) {
    PGconn* connection = PQconnectdb(Server().c_str());
    PGresult* result = PQexec(connection, sql.c_str());
    if (PQresultStatus(result) != PGRES_COMMAND_OK) std::fprintf(stderr, "%s", PQerrorMessage(connection));
    PQclear(result);
    PQfinish(connection);
  }

  static inline int count_ = 0;
  std::string name_;
};

using Post = std::function<void(const Posting&)>;

void Register(const std::string& name, const SampleLedger& sample, const Post& post, bool backDated) {
  const Date early = sample.DayBeforeLast(100'000);
  RegisterPostings(name, backDated ? 1 : 100, backDated ? 9 : 31, [=, &sample](benchmark::State& state) {
    std::mt19937 random(7);
    for ([[maybe_unused]] auto _ : state) {
      state.PauseTiming();
      Posting posting = sample.Ordinary(random);
      if (backDated) posting.date = early;
      state.ResumeTiming();
      post(posting);
    }
    state.SetItemsProcessed(state.iterations());
  });
}

}  // namespace
}  // namespace tsv::bench

int main(int argc, char** argv) {
  using namespace tsv::bench;
  Medians::Initialize(argc, argv);
  const Scratch first;
  const SampleLedger sample(first.Address(), kEntries);
  const Scratch second(first.Name());
  const Scratch third(first.Name());
  {
    ServerFloor floor(first.Address());
    ServerFloor function(third.Address());
    tsv::Tesovia tesovia;
    tesovia.InicializarTS(second.Address(), "banco", "prova");
    const Post byHand = [&](const Posting& p) { floor.Post(p); };
    const Post byFunction = [&](const Posting& p) { function.PostOnServer(p); };
    const Post byLibrary = [&](const Posting& p) {
      tesovia.FazerLancamentoTS(p.date, p.date, p.amount, "LANCAMENTO", p.account, p.type, p.centre, p.partner);
    };
    Register("append/floor", sample, byHand, false);
    Register("append/library", sample, byLibrary, false);
    Register("append/function", sample, byFunction, false);
    Register("backdated100k/floor", sample, byHand, true);
    Register("backdated100k/library", sample, byLibrary, true);
    Register("backdated100k/function", sample, byFunction, true);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::puts("");
    medians.Ratio("postings a second, library to pipelined program", "append/floor", "append/library");
    medians.Ratio("postings a second, library to one function on the server", "append/function", "append/library");
    medians.Ratio("back-dated over 100,000 a second, library to pipelined program", "backdated100k/floor",
                  "backdated100k/library");
    medians.Ratio("back-dated over 100,000 a second, library to one function", "backdated100k/function",
                  "backdated100k/library");
  }
  return EXIT_SUCCESS;
}
