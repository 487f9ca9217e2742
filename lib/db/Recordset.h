#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "types/Variant.h"

namespace tsv::db {

enum RecordsetTypeEnum : std::int32_t {
  dbOpenTable = 1,
  dbOpenDynaset = 2,
  dbOpenSnapshot = 4,
  dbOpenForwardOnly = 8,  // rows are not kept: the cheap way through a long result
};

// Options of OpenRecordset and Execute.
inline constexpr std::int32_t dbReadOnly = 4;
inline constexpr std::int32_t dbFailOnError = 128;

enum class DataTypeEnum : std::int32_t {
  dbBoolean = 1,
  dbByte = 2,
  dbLong = 4,
  dbCurrency = 5,
  dbDouble = 7,
  dbDate = 8,
  dbText = 10,
};

class Recordset;

// One column of a recordset; Value reads it in the current row.
class Field {
 public:
  Field(const Recordset& recordset, std::size_t index) noexcept : recordset_(&recordset), index_(index) {}

  const std::string& Name() const;
  DataTypeEnum Type() const;
  const Variant& Value() const;  // no current row: 3021

 private:
  const Recordset* recordset_;
  std::size_t index_;
};

// The rows of one SELECT, standing before the first (BOF), on a row, or after the last (EOF); a new recordset stands
// on its first row. Every member but Close raises 3420 once closed.
class Recordset {
 public:
  virtual ~Recordset() = default;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  virtual void MoveFirst() = 0;  // an empty recordset: 3021; forward-only past its first row: 3219
  virtual void MoveLast() = 0;   // forward-only: 3219
  virtual void MoveNext() = 0;   // at EOF: 3021
  virtual void MovePrevious() = 0;
  virtual bool BOF() const = 0;
  virtual bool EndOfFile() const = 0;  // DAO's EOF, a name that C's headers take

  // The rows met so far: all of them after MoveLast, 0 for an empty recordset.
  virtual std::int32_t RecordCount() const = 0;

  virtual std::size_t FieldCount() const = 0;
  Field Fields(std::string_view name) const;  // without regard to case; unknown: 3265
  Field Fields(std::size_t index) const;      // from 0; out of range: 3265

  virtual void Close() = 0;  // a second time: 3420

 protected:
  Recordset() = default;

 private:
  friend class Field;
  virtual const std::string& NameAt(std::size_t index) const = 0;
  virtual DataTypeEnum TypeAt(std::size_t index) const = 0;
  virtual const Variant& ValueAt(std::size_t index) const = 0;
};

}  // namespace tsv::db
