#include "db/dao/windows/Ole.h"

#include <charconv>
#include <iterator>
#include <limits>
#include <new>

#include "types/AutomationValues.h"
#include "types/Erro.h"

namespace tsv::db::dao {
namespace {

// Fills an automation value of the kind that the alternative has.
struct Filling {
  VARIANT& out;

  void operator()(Empty) const { out.vt = VT_EMPTY; }
  void operator()(Null) const { out.vt = VT_NULL; }
  void operator()(bool value) const {
    out.vt = VT_BOOL;
    out.boolVal = automation::BoolToAutomation(value);
  }
  void operator()(std::uint8_t value) const {
    out.vt = VT_UI1;
    out.bVal = value;
  }
  void operator()(std::int32_t value) const {
    out.vt = VT_I4;
    out.lVal = value;
  }
  void operator()(double value) const {
    out.vt = VT_R8;
    out.dblVal = value;
  }
  void operator()(Currency value) const {
    out.vt = VT_CY;
    out.cyVal.int64 = automation::CurrencyToAutomation(value);
  }
  void operator()(Date value) const {
    out.vt = VT_DATE;
    out.date = automation::DateToAutomation(value);
  }
  void operator()(const std::string& value) const {
    out.bstrVal = NewBstr(value);
    out.vt = VT_BSTR;
  }
};

// The platform's functions only read it, but do not say so.
VARIANT* Read(const VARIANT& value) { return const_cast<VARIANT*>(&value); }

// What an object tells of its failure, freed with it.
struct Failure : EXCEPINFO {
  Failure() noexcept : EXCEPINFO{} {}
  ~Failure() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;

  [[noreturn]] void Raise() {
    if (pfnDeferredFillIn) pfnDeferredFillIn(this);
    const std::int32_t number = wCode != 0 ? wCode : automation::NumberOf(scode);
    throw Erro(number, TextOf(bstrDescription), TextOf(bstrSource));
  }
};

// The digits that its writer meant, which are fewer than those of its binary value.
double Widened(float value) {
  char text[32] = {};
  const char* end = std::to_chars(std::begin(text), std::end(text), value).ptr;
  double wide = value;
  std::from_chars(text, end, wide);
  return wide;
}

double AsDouble(const VARIANT& value) {
  OleValue number;
  if (FAILED(VariantChangeType(&number.Raw(), Read(value), 0, VT_R8))) Raise(RuntimeError::Overflow);
  return number.Raw().dblVal;
}

// An amount while it is one: neither a double nor every platform's own conversion keeps the cents of large ones.
Variant DecimalValue(const VARIANT& value) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  const DECIMAL& given = value.decVal;
  std::uint64_t units = given.Lo64;
  int scale = given.scale;
  for (; scale > 4 && units % 10 == 0; --scale) units /= 10;
  for (; scale < 4 && units <= most / 10; ++scale) units *= 10;
  if (scale != 4 || given.Hi32 != 0 || units > most) return AsDouble(value);
  const auto amount = static_cast<std::int64_t>(units);
  return Currency::FromTenThousandths((given.sign & DECIMAL_NEG) != 0 ? -amount : amount);
}

OleValue DefaultValue(IDispatch& object) {
  DISPPARAMS none = {};
  OleValue value;
  if (FAILED(CallMember(object, DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, none, &value.Raw()))) {
    Raise(RuntimeError::TypeMismatch);
  }
  return value;
}

}  // namespace

OleValue::OleValue(const Variant& value) : OleValue() { std::visit(Filling{value_}, value); }

OleValue::OleValue(IDispatch* object) noexcept : OleValue() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = object;
  if (object) object->AddRef();
}

OleValue::OleValue(const OleValue& other) : OleValue() {
  if (FAILED(VariantCopy(&value_, Read(other.value_)))) throw std::bad_alloc();
}

Variant ValueOf(const VARIANT& value) {
  OleValue plain;
  if (FAILED(VariantCopyInd(&plain.Raw(), Read(value)))) Raise(RuntimeError::TypeMismatch);
  if (plain.Raw().vt == VT_DISPATCH && plain.Raw().pdispVal) plain = DefaultValue(*plain.Raw().pdispVal);
  const VARIANT& v = plain.Raw();
  switch (v.vt) {
    case VT_EMPTY:
      return Empty();
    case VT_NULL:
      return Null();
    case VT_BOOL:
      return automation::BoolFromAutomation(v.boolVal);
    case VT_UI1:
      return v.bVal;
    case VT_I1:
      return std::int32_t{v.cVal};
    case VT_I2:
      return std::int32_t{v.iVal};
    case VT_UI2:
      return std::int32_t{v.uiVal};
    case VT_I4:
    case VT_INT:
      return std::int32_t{v.lVal};
    case VT_R4:
      return Widened(v.fltVal);
    case VT_R8:
      return v.dblVal;
    case VT_CY:
      return automation::CurrencyFromAutomation(v.cyVal.int64);
    case VT_DATE:
      return automation::DateFromAutomation(v.date);
    case VT_BSTR:
      return TextOf(v.bstrVal);
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
      return AsDouble(v);
    case VT_DECIMAL:
      return DecimalValue(v);
    default:
      Raise(RuntimeError::TypeMismatch);
  }
}

ComPointer<IDispatch> ObjectOf(const VARIANT& value) {
  OleValue plain;
  if (FAILED(VariantCopyInd(&plain.Raw(), Read(value)))) Raise(RuntimeError::TypeMismatch);
  const VARIANT& v = plain.Raw();
  if (v.vt != VT_DISPATCH && v.vt != VT_UNKNOWN) Raise(RuntimeError::TypeMismatch);
  if (!v.punkVal) Raise(RuntimeError::ObjectNotSet);
  ComPointer<IDispatch> object;
  if (FAILED(v.punkVal->QueryInterface(IID_IDispatch, object.ReceiveAny()))) Raise(RuntimeError::TypeMismatch);
  return object;
}

HRESULT CallMember(IDispatch& object, DISPID member, WORD flags, DISPPARAMS& given, VARIANT* result) {
  Failure failure;
  UINT wrong = 0;
  const HRESULT outcome = object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &given, result, &failure, &wrong);
  if (outcome == DISP_E_EXCEPTION) failure.Raise();
  return outcome;
}

BSTR NewBstr(std::string_view utf8) {
  const std::u16string text = automation::TextToAutomation(utf8);
  const BSTR bstr = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
  if (!bstr) throw std::bad_alloc();
  return bstr;
}

std::string TextOf(BSTR text) {
  return automation::TextFromAutomation({reinterpret_cast<const char16_t*>(text), SysStringLen(text)});
}

}  // namespace tsv::db::dao
