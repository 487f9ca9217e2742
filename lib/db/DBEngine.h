#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "db/Database.h"

namespace tsv::db {

// One kind of database. The first driver that recognises a path opens it.
class Driver {
 public:
  virtual ~Driver() = default;

  // Whether the path, as given by the client, names a database of this kind. A driver that opens the file to see that
  // must not disturb the locks that this process may hold on it.
  virtual bool Recognises(std::string_view path) const = 0;
  virtual std::shared_ptr<Database> Open(std::string_view path, bool exclusive, bool readOnly,
                                         std::string_view connect) const = 0;
};

// A transaction space: what is begun here covers every database opened in it. Levels nest; an inner commit is undone
// when an outer level rolls back.
class Workspace {
 public:
  void BeginTrans();

  // Without BeginTrans both raise 3034. A failed commit leaves its level open for a rollback; a rollback always ends
  // its level, whatever it raises.
  void CommitTrans();
  void Rollback();

 private:
  friend class DBEngine;
  using Level = std::vector<std::weak_ptr<Database>>;

  Level databases_;
  std::vector<Level> levels_;  // who takes part in each open level
};

class DBEngine {
 public:
  explicit DBEngine(std::vector<std::unique_ptr<Driver>> drivers);

  // connect: "MS Access;PWD=...". A missing file: 3024; no driver knows the file: 3343; wrong password: 3031.
  // A folder, or a file that may not be read: 3051.
  // A transaction covers every database that is open here, so one file opened twice for writing would wait for itself.
  std::shared_ptr<Database> OpenDatabase(std::string_view path, bool exclusive, bool readOnly,
                                         std::string_view connect);

  Workspace& Workspaces(std::size_t index);  // only 0 exists; another: 3265

  // Attached to every database opened from now on.
  void Observe(std::shared_ptr<StatementObserver> observer);

 private:
  std::vector<std::unique_ptr<Driver>> drivers_;
  std::shared_ptr<StatementObserver> observer_;
  Workspace workspace_;
};

// The value of PWD in a connect string, empty when it has none.
std::string_view PasswordIn(std::string_view connect);

}  // namespace tsv::db
