#include "importing/Importer.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>

#include "Refusals.h"
#include "Texts.h"
#include "db/EngineError.h"

namespace tsv::cli {
namespace {

constexpr std::int32_t kLinesInBatch = 500;
constexpr auto kLongestBatch = std::chrono::seconds(1);

// Errors that the values of one line cause; any other ends the import.
bool IsOfTheLine(const Erro& erro) {
  using db::EngineError;
  constexpr std::array kEngine = {EngineError::SyntaxInExpression, EngineError::TextTooLong,
                                  EngineError::RequiredField,      EngineError::ZeroLength,
                                  EngineError::NumericOverflow,    EngineError::ConversionError};
  constexpr std::array kRuntime = {RuntimeError::InvalidArgument, RuntimeError::Overflow, RuntimeError::TypeMismatch};
  const auto is = [&erro](auto known) { return erro.Numero() == static_cast<std::int32_t>(known); };
  return IsRefusal(erro) || std::any_of(kEngine.begin(), kEngine.end(), is) ||
         std::any_of(kRuntime.begin(), kRuntime.end(), is);
}

// A line that cannot be read is like no line that was posted.
std::string DigestOf(const CsvLine& line, const Columns& columns) {
  const bool isReadable = line.error.empty() && line.fields.size() == columns.Count();
  return isReadable ? DigestOf(columns.EntryOf(line.fields)) : std::string();
}

std::int64_t SizeOf(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

}  // namespace

Importer::Importer(Context& context, Tesovia& tesovia, std::string path, std::string identity)
    : context_(context),
      tesovia_(tesovia),
      path_(std::move(path)),
      identity_(std::move(identity)),
      marks_(identity_),
      bar_("Lançando", SizeOf(path_)) {}

void Importer::Run() {
  context_.Host().KeepBoxes();
  CompareWithMarks();
  PostLines();
  bar_.Wipe();
}

Columns Importer::ReadHeader(CsvFile& file) const {
  const auto header = file.Next();
  if (!header) throw Failure(kUsage, "'" + path_ + "' está vazio.");
  if (!header->error.empty()) throw Failure(kUsage, "Cabeçalho de '" + path_ + "': " + header->error);
  return Columns(header->fields);
}

void Importer::CompareWithMarks() {
  CsvFile file(path_);
  const Columns columns = ReadHeader(file);
  std::int32_t loadedTo = 0;
  while (const auto line = file.Next()) {
    if (line->number >= loadedTo) {
      loadedTo = line->number + kLinesInBatch;
      marks_.Load(line->number, loadedTo - 1);
    }
    const std::string* digest = marks_.Find(line->number);
    if (digest && *digest != DigestOf(*line, columns)) RaiseOtherContent(line->number);
  }
}

void Importer::PostLines() {
  CsvFile file(path_);
  const Columns columns = ReadHeader(file);
  std::optional<Batch> batch;
  while (const auto line = file.Next()) {
    if (batch && line->number >= batch->end) Commit(batch);
    if (!batch) {
      batch.emplace();
      batch->transaction.BegTrans();
      batch->end = line->number + kLinesInBatch;
      batch->deadline = std::chrono::steady_clock::now() + kLongestBatch;
      marks_.Load(line->number, batch->end - 1);
    }
    PostLine(*line, columns, *batch);
    if (std::chrono::steady_clock::now() > batch->deadline) Commit(batch);
    bar_.At(file.Position());
  }
  if (batch) Commit(batch);
}

void Importer::PostLine(const CsvLine& line, const Columns& columns, Batch& batch) {
  const std::string digest = DigestOf(line, columns);
  if (const std::string* known = marks_.Find(line.number)) {
    if (*known != digest) RaiseOtherContent(line.number);
    ++batch.result.before;
    return;
  }
  if (!line.error.empty()) return Refuse(line, line.error, batch);
  if (line.fields.size() != columns.Count()) {
    return Refuse(line,
                  "tem " + Count(static_cast<std::int64_t>(line.fields.size()), "campo", "campos") +
                      "; o cabeçalho tem " + std::to_string(columns.Count()) + ".",
                  batch);
  }
  try {
    PostWithMark(columns.EntryOf(line.fields), line, digest);
    ++batch.result.posted;
  } catch (const Failure& failure) {
    Refuse(line, failure.what(), batch);
  } catch (const Erro& erro) {
    if (!IsOfTheLine(erro)) throw;
    Refuse(line, ReasonOf(erro, context_.Host()), batch);
  }
}

std::int32_t Importer::PostWithMark(const TypedEntry& entry, const CsvLine& line, const std::string& digest) {
  CDaoTrans transaction;
  transaction.BegTrans();
  const std::int32_t id = Post(tesovia_, context_.Host(), entry)->Id();
  marks_.Set(line.number, digest, id);
  transaction.ComTrans();
  return id;
}

void Importer::Refuse(const CsvLine& line, const std::string& reason, Batch& batch) {
  ++batch.result.refused;
  bar_.Wipe();
  std::cerr << "linha " << line.number << ": " << OneLine(reason) << '\n';
}

void Importer::Commit(std::optional<Batch>& batch) {
  batch->transaction.ComTrans();
  done_.posted += batch->result.posted;
  done_.before += batch->result.before;
  done_.refused += batch->result.refused;
  batch.reset();
}

void Importer::RaiseOtherContent(std::int32_t line) const {
  throw Failure(kRefused, "A linha " + std::to_string(line) + " de '" + identity_ +
                              "' já foi lançada com outro conteúdo; a importação parou sem lançar mais nada.\n"
                              "Se este é outro arquivo com o mesmo nome, dê-lhe uma identidade: --identidade NOME.\n"
                              "Se é o mesmo arquivo, devolva a linha ao que era e lance a diferença à parte.");
}

}  // namespace tsv::cli
