// The posting workload against the floor, in one run: end of the ledger, parent codes seldom or never posted on, and
// back-dated over 100,000 entries. Ends with the ratios, each of medians.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "Floor.h"
#include "Medians.h"
#include "SampleLedger.h"
#include "db/sqlite/Connection.h"
#include "tsvlib2.h"

namespace tsv::bench {
namespace {

// The same ledger twice, so that neither writer spoils the other's cache.
struct Rig {
  Rig(const std::filesystem::path& folder, std::int32_t entries)
      : sample((folder / ("floor-" + std::to_string(entries))).string(), entries), floor(sample.Path()) {
    const std::string copy = (folder / ("library-" + std::to_string(entries))).string();
    std::filesystem::copy_file(sample.Path(), copy);
    path = copy;
    keeper.emplace(path, db::sqlite::Connection::Access::Write, std::chrono::milliseconds(1000));
    keeper->Integer("SELECT Serial FROM Serial");
  }

  // One thread's session is one ledger, so the rig in use is opened when its turn comes.
  Tesovia& Library() {
    if (CurrentSession().CaminhoBancoDeDados != path || !CurrentSession().BancoDeDados)
      tesovia.InicializarTS(path, "banco", "prova");
    return tesovia;
  }

  std::shared_ptr<CLancamento> Post(const Posting& p) {
    return Library().FazerLancamentoTS(p.date, p.date, p.amount, "LANCAMENTO", p.account, p.type, p.centre, p.partner);
  }

  // Takes the last entry of the ledger away again: no balance of another entry holds it.
  void Forget(const CLancamento& last) {
    CurrentSession().BancoDeDados->Execute("DELETE * FROM Lancamentos WHERE Id = " + std::to_string(last.Id()));
  }

  SampleLedger sample;
  Floor floor;
  std::string path;
  Tesovia tesovia;

  // Another user of the library's file: its log stays, as the floor's does, when the session turns to the other ledger.
  std::optional<db::sqlite::Connection> keeper;
};

constexpr int kWarmUp = 100;

// Repetitions: many short ones where the disk's moods count more than the work.
constexpr int kFew = 9;
constexpr int kMany = 31;

enum class Writer { Floor, Library, LibraryForgetting };
using Change = std::function<void(Posting&)>;

void Run(benchmark::State& state, Rig& rig, Writer writer, const Change& change) {
  std::mt19937 random(7);
  // A session that was opened anew has nothing prepared and nothing in its cache; the floor has both.
  for (int i = 0; i < kWarmUp; ++i)
    writer == Writer::Floor ? rig.floor.Post(rig.sample.Ordinary(random)) : void(rig.Post(rig.sample.Ordinary(random)));
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    Posting posting = rig.sample.Ordinary(random);
    if (change) change(posting);
    state.ResumeTiming();
    if (writer == Writer::Floor) {
      rig.floor.Post(posting);
      continue;
    }
    const auto posted = rig.Post(posting);
    if (writer == Writer::Library) continue;
    state.PauseTiming();
    rig.Forget(*posted);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations());
}

void Register(const std::string& name, Rig& rig, Writer writer, int iterations, int repetitions,
              const Change& change = {}) {
  RegisterPostings(name, iterations, repetitions,
                   [&rig, writer, change](benchmark::State& state) { Run(state, rig, writer, change); });
}

}  // namespace
}  // namespace tsv::bench

int main(int argc, char** argv) {
  using namespace tsv::bench;
  Medians::Initialize(argc, argv);
  std::string folder = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) return EXIT_FAILURE;
  {
    Rig small(folder, 10'000);
    Rig large(folder, 1'000'000);
    sync();  // what was written to make the ledgers must not be waited for by the first postings
    const tsv::Date early = large.sample.DayBeforeLast(100'000);
    const Change neverUsed = [](Posting& p) { p.account = "1"; };
    const Change seldomUsed = [](Posting& p) { p.account = "2"; };
    const Change backDated = [early](Posting& p) { p.date = early; };
    Register("append/floor/10k", small, Writer::Floor, 100, kMany);
    Register("append/library/10k", small, Writer::Library, 100, kMany);
    Register("append/floor/1M", large, Writer::Floor, 100, kMany);
    Register("append/library/1M", large, Writer::Library, 100, kMany);
    Register("backdated100k/floor/1M", large, Writer::Floor, 3, kFew, backDated);
    Register("backdated100k/library/1M", large, Writer::Library, 3, kFew, backDated);
    Register("parent/never/library/1M", large, Writer::LibraryForgetting, 20, kFew, neverUsed);
    Register("parent/seldom/library/1M", large, Writer::LibraryForgetting, 20, kFew, seldomUsed);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    std::puts("");
    medians.Ratio("postings a second, library to floor, 10,000 entries", "append/floor/10k", "append/library/10k");
    medians.Ratio("postings a second, library to floor, 1,000,000 entries", "append/floor/1M", "append/library/1M");
    medians.Ratio("time of an ordinary posting, 1,000,000 to 10,000 entries", "append/library/1M",
                  "append/library/10k");
    medians.Ratio("time on a parent code never used, to an ordinary posting", "parent/never/library/1M",
                  "append/library/1M");
    medians.Ratio("time on a parent code seldom used, to an ordinary posting", "parent/seldom/library/1M",
                  "append/library/1M");
    medians.Ratio("time back-dated over 100,000 entries, library to floor", "backdated100k/library/1M",
                  "backdated100k/floor/1M");
  }
  std::filesystem::remove_all(folder);
  return EXIT_SUCCESS;
}
