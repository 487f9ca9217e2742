#include "RecordsetObject.h"

#include <string>

#include "CollectionObject.h"
#include "Values.h"
#include "db/EngineError.h"
#include "db/dao/windows/AutomationRecordset.h"
#include "types/Conversions.h"

namespace tsv::com {
namespace {

using Rows = std::shared_ptr<db::Recordset>;

[[noreturn]] void RaiseNoSuchMember() {
  constexpr std::int32_t kNoSuchMember = 438;
  throw Erro(kNoSuchMember, "O objeto não tem esse membro.");
}

db::Field FieldOf(const db::Recordset& rows, const OleValue& nameOrIndex) {
  const Variant key = ValueOf(nameOrIndex.Raw());
  if (const auto* name = std::get_if<std::string>(&key)) return rows.Fields(*name);
  const std::int32_t index = ToLong(key);
  return rows.Fields(index < 0 ? rows.FieldCount() : static_cast<std::size_t>(index));
}

// A part of a recordset, which can only be read.
class RowsPart : public ScriptObject {
 protected:
  explicit RowsPart(Rows rows) : rows_(std::move(rows)) {}

  virtual OleValue Read(DISPID member, Arguments& arguments) = 0;

  Rows rows_;

 private:
  OleValue Run(DISPID member, WORD flags, Arguments& arguments) final {
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) db::Raise(db::EngineError::ReadOnly);
    return Read(member, arguments);
  }
};

enum FieldMember : DISPID { kValue = DISPID_VALUE, kName, kType };

class FieldObject final : public RowsPart {
 public:
  FieldObject(Rows rows, db::Field field) : RowsPart(std::move(rows)), field_(field) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"Value", kValue}, {L"Name", kName}, {L"Type", kType}};
    return members;
  }
  OleValue Read(DISPID member, Arguments&) override {
    switch (member) {
      case kValue:
        return OleValue(field_.Value());
      case kName:
        return OleValue(Variant(field_.Name()));
      case kType:
        return OleValue(Variant(static_cast<std::int32_t>(field_.Type())));
      default:
        RaiseNoSuchMember();
    }
  }

  db::Field field_;
};

OleValue NewField(const Rows& rows, db::Field field) { return Returned(new FieldObject(rows, field)); }

enum FieldsMember : DISPID { kItem = DISPID_VALUE, kCount };

class FieldsObject final : public RowsPart {
 public:
  explicit FieldsObject(Rows rows) : RowsPart(std::move(rows)) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"Item", kItem}, {L"Count", kCount}};
    return members;
  }
  OleValue Read(DISPID member, Arguments& arguments) override {
    switch (member) {
      case kItem:
        if (arguments.size() != 1) Raise(RuntimeError::InvalidArgument);
        return NewField(rows_, FieldOf(*rows_, arguments[0]));
      case kCount:
        return OleValue(Variant(static_cast<std::int32_t>(rows_->FieldCount())));
      case DISPID_NEWENUM:
        return Enumerated();
      default:
        RaiseNoSuchMember();
    }
  }
  OleValue Enumerated() const {
    std::vector<OleValue> fields;
    for (std::size_t i = 0; i < rows_->FieldCount(); ++i) fields.push_back(NewField(rows_, rows_->Fields(i)));
    OleValue enumerator;
    enumerator.Raw().punkVal = NewEnumerator(std::move(fields));
    enumerator.Raw().vt = VT_UNKNOWN;
    return enumerator;
  }
};

enum RecordsetMember : DISPID {
  kFields = DISPID_VALUE,
  kMoveFirst,
  kMoveLast,
  kMoveNext,
  kMovePrevious,
  kBof,
  kEof,
  kRecordCount,
  kGetRows,
  kClose
};

class RecordsetObject final : public RowsPart {
 public:
  explicit RecordsetObject(Rows rows) : RowsPart(std::move(rows)) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {
        {L"Fields", kFields}, {L"MoveFirst", kMoveFirst},       {L"MoveLast", kMoveLast}, {L"MoveNext", kMoveNext},
        {L"BOF", kBof},       {L"MovePrevious", kMovePrevious}, {L"EOF", kEof},           {L"GetRows", kGetRows},
        {L"Close", kClose},   {L"RecordCount", kRecordCount}};
    return members;
  }

  OleValue Read(DISPID member, Arguments& arguments) override {
    switch (member) {
      case kFields:
        // rs("Id") and rs.Fields("Id") come in one step, rs.Fields alone is the collection.
        if (arguments.empty()) return Returned(new FieldsObject(rows_));
        return NewField(rows_, FieldOf(*rows_, arguments[0]));
      case kMoveFirst:
        return rows_->MoveFirst(), OleValue();
      case kMoveLast:
        return rows_->MoveLast(), OleValue();
      case kMoveNext:
        return rows_->MoveNext(), OleValue();
      case kMovePrevious:
        return rows_->MovePrevious(), OleValue();
      case kBof:
        return OleValue(Variant(rows_->BOF()));
      case kEof:
        return OleValue(Variant(rows_->EndOfFile()));
      case kRecordCount:
        return OleValue(Variant(rows_->RecordCount()));
      case kGetRows:
        return GetRows(arguments.empty() ? 1 : ToLong(ValueOf(arguments[0].Raw())));
      case kClose:
        return rows_->Close(), OleValue();
      default:
        RaiseNoSuchMember();
    }
  }

  // A table of up to so many rows from the current one on, first by field, then by row; it moves past them.
  OleValue GetRows(std::int32_t most) {
    std::vector<Variant> values;
    const std::size_t fields = rows_->FieldCount();
    std::int32_t count = 0;
    for (; count < most && !rows_->EndOfFile(); ++count, rows_->MoveNext()) {
      for (std::size_t i = 0; i < fields; ++i) values.push_back(rows_->Fields(i).Value());
    }
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(fields), 0}, {static_cast<ULONG>(count), 0}};
    OleValue table;
    table.Raw().parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!table.Raw().parray) throw std::bad_alloc();
    table.Raw().vt = VT_ARRAY | VT_VARIANT;
    for (std::size_t i = 0; i < values.size(); ++i) {
      LONG place[] = {static_cast<LONG>(i % fields), static_cast<LONG>(i / fields)};
      OleValue value(values[i]);
      if (FAILED(SafeArrayPutElement(table.Raw().parray, place, &value.Raw()))) throw std::bad_alloc();
    }
    return table;
  }
};

}  // namespace

IDispatch* NewRecordsetObject(std::shared_ptr<db::Recordset> recordset) {
  if (const auto* legacy = dynamic_cast<db::dao::AutomationRecordset*>(recordset.get())) {
    return ComPointer<IDispatch>::Sharing(legacy->Object()).Detach();
  }
  return new RecordsetObject(std::move(recordset));
}

}  // namespace tsv::com
