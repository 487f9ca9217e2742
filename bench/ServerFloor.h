#pragma once

#include <libpq-fe.h>

#include <memory>
#include <string>

#include "SampleLedger.h"

namespace tsv::bench {

// The baselines on a server: programs written by hand that post an entry with the same statements and the same two
// queries, and do nothing besides.
class ServerFloor {
 public:
  explicit ServerFloor(const std::string& address);

  // Prepared once; what does not depend on an answer is sent along with what goes before: two reads, then everything
  // from BEGIN to the verification, then COMMIT.
  void Post(const Posting& posting);

  // All of it in one function on the server.
  void PostOnServer(const Posting& posting);

 private:
  struct Finisher {
    void operator()(PGconn* connection) const noexcept { PQfinish(connection); }
  };
  using Results = std::vector<std::unique_ptr<PGresult, decltype(&PQclear)>>;

  void Do(const std::string& sql);
  void Prepare(const char* name, const std::string& sql);
  void Send(const char* name, const std::vector<const char*>& values);
  Results Sync(int statements);

  std::unique_ptr<PGconn, Finisher> connection_;
};

}  // namespace tsv::bench
