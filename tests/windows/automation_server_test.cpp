// The server before an early-bound program: through the tables of virtual functions, on several threads.
#include <gtest/gtest.h>

#include <thread>

#include "TesoviaLib2.h"
#include "db/dao/windows/LateBound.h"
#include "support/Company.h"
#include "types/Conversions.h"
#include "types/Erro.h"

using tsv::Erro;
using tsv::ToText;
using tsv::Variant;
using tsv::db::dao::ArgumentsOf;
using tsv::db::dao::ComPointer;
using tsv::db::dao::LateBound;
using tsv::db::dao::OleValue;
using tsv::db::dao::TextOf;
using tsv::db::dao::ValueOf;
using tsv::test::Company;
using tsv::test::Day;

namespace {

// The apartment of a thread.
struct Apartment {
  Apartment() { CoInitialize(nullptr); }
  ~Apartment() { CoUninitialize(); }
};

struct Bstr {
  explicit Bstr(std::string_view text) : value(tsv::db::dao::NewBstr(text)) {}
  ~Bstr() { SysFreeString(value); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  operator BSTR*() { return &value; }
  BSTR value;
};

template <typename Interface>
ComPointer<Interface> Create(REFCLSID id) {
  ComPointer<Interface> object;
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.ReceiveAny()), S_OK);
  return object;
}

ComPointer<_Tesovia> LoggedIn(const Company& company) {
  auto tesovia = Create<_Tesovia>(CLSID_Tesovia);
  EXPECT_EQ(tesovia->InicializarTS(Bstr(company.Path()), Bstr("ana"), Bstr("segredo")), S_OK);
  return tesovia;
}

HRESULT Post(_Tesovia& tesovia, std::string_view account, _CLancamento** entry) {
  DATE day = Day(2008, 7, 5).Days();
  CURRENCY amount = {};
  amount.int64 = 1'234'500;
  return tesovia.FazerLancamentoTS(&day, &day, &amount, Bstr("h"), Bstr(account), Bstr("0"), nullptr, nullptr, nullptr,
                                   entry);
}

std::string DescriptionOfLastError() {
  ComPointer<IErrorInfo> error;
  if (GetErrorInfo(0, error.Receive()) != S_OK) return "no error";
  OleValue description;
  error->GetDescription(&description.Raw().bstrVal);
  description.Raw().vt = VT_BSTR;
  return TextOf(description.Raw().bstrVal);
}

TEST(EarlyBinding, PostsAndReadsThroughTheTables) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  ComPointer<_CLancamento> entry;
  ASSERT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
  CURRENCY balance = {};
  EXPECT_EQ(entry->get_SaldoGlobal(&balance), S_OK);
  EXPECT_EQ(balance.int64, 1'234'500);
  OleValue key;
  EXPECT_EQ(entry->get_DataId(&key.Raw().bstrVal), S_OK);
  key.Raw().vt = VT_BSTR;
  EXPECT_EQ(TextOf(key.Raw().bstrVal), "20080705000000001");
  long version = 9;
  EXPECT_EQ(entry->put_IdConcorrencia(&version), S_OK);
  EXPECT_EQ(entry->get_IdConcorrencia(&version), S_OK);
  EXPECT_EQ(version, 9);

  long id = 1;
  long stale = 5;
  EXPECT_EQ(tesovia->ExcluirLancamentoTS(&id, &stale), static_cast<HRESULT>(TS_ERRO_EXCLUSAO));
  EXPECT_TRUE(DescriptionOfLastError().starts_with("O lançamento não foi localizado")) << "accents arrive";
}

TEST(EarlyBinding, SettlesTransfersAndReversesWithEveryClass) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  ComPointer<_CLancamento> entry;
  ASSERT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
  CURRENCY amount = {};
  long id = 1;
  long version = 0;

  const auto settlement = Create<_CBaixa>(CLSID_CBaixa);
  TIPO_BAIXA kind = BAIXA_PARCIAL;
  OleValue day{Variant(Day(2008, 7, 6))};
  amount.int64 = 1'000'000;
  EXPECT_EQ(settlement->put_TipoBaixa(&kind), S_OK);
  EXPECT_EQ(settlement->put_DataRealizacao(&day.Raw()), S_OK);
  EXPECT_EQ(settlement->put_ValorBaixado(&amount), S_OK);
  EXPECT_EQ(settlement->put_IdLancamento(&id), S_OK);
  EXPECT_EQ(settlement->put_IdConcorrencia(&version), S_OK);
  _CBaixa* request = settlement.Get();
  ComPointer<_CLancamento> settled;
  ASSERT_EQ(tesovia->BaixarLancamentoTS(&request, settled.Receive()), S_OK);
  EXPECT_EQ(settled->get_ValorPago(&amount), S_OK);
  EXPECT_EQ(amount.int64, 1'000'000);

  const auto transfer = Create<_CTransferencia>(CLSID_CTransferencia);
  DATE when = Day(2008, 7, 7).Days();
  EXPECT_EQ(transfer->put_CodContaOrigem(Bstr("1.1")), S_OK);
  EXPECT_EQ(transfer->put_CodContaDestino(Bstr("1.2")), S_OK);
  EXPECT_EQ(transfer->put_Valor(&amount), S_OK);
  EXPECT_EQ(transfer->put_DataDaTransferencia(&when), S_OK);
  EXPECT_EQ(transfer->put_HistoricoSaida(Bstr("sai")), S_OK);
  EXPECT_EQ(transfer->put_HistoricoEntrada(Bstr("entra")), S_OK);
  _CTransferencia* move = transfer.Get();
  ComPointer<_Collection> legs;
  ASSERT_EQ(tesovia->FazerTransferenciaTS(&move, legs.Receive()), S_OK);
  long count = 0;
  EXPECT_EQ(legs->Count(&count), S_OK);
  EXPECT_EQ(count, 2);

  ASSERT_EQ(settled->get_IdConcorrencia(&version), S_OK);
  ComPointer<_CLancamento> reversal;
  ASSERT_EQ(tesovia->EstornarLancamentoTS(Bstr("engano"), &id, &version, reversal.Receive()), S_OK);
  EXPECT_EQ(reversal->get_Valor(&amount), S_OK);
  EXPECT_EQ(amount.int64, -1'000'000);

  const auto own = Create<_CLancamento>(CLSID_CLancamento);
  RecordsetTypeEnum type = dbOpenSnapshot;
  ComPointer<IDispatch> rows;
  ASSERT_EQ(tesovia->AbrirRecordsetTS(Bstr("Select * From Lancamentos Where Id=3"), &type, rows.Receive()), S_OK);
  IDispatch* row = rows.Get();
  EXPECT_EQ(own->CarregarDeRegistro(&row), S_OK);
  unsigned char leg = 0;
  EXPECT_EQ(own->get_Transferencia(&leg), S_OK);
  EXPECT_EQ(leg, 2) << "the one that comes in";
}

TEST(EarlyBinding, ArgumentsAreTakenByTheirNames) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  const wchar_t* names[] = {L"FazerLancamentoTS", L"documento", L"CODRECDESP",    L"CodConta",
                            L"Historico",         L"Valor",     L"DataReferencia"};
  DISPID ids[std::size(names)] = {};
  ASSERT_EQ(tesovia->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(names), std::size(names), 0, ids), S_OK);
  auto values = tsv::db::dao::ArgumentsOf(std::string("NF 7"), std::string("0"), std::string("1.1"),
                                          std::string("por nome"), std::int32_t{12}, Day(2008, 7, 1));
  values.push_back(OleValue(Variant(Day(2008, 7, 5))));  // the first argument has no name here
  std::vector<VARIANT> raw;
  for (OleValue& value : values) raw.push_back(value.Raw());
  DISPPARAMS given = {raw.data(), ids + 1, static_cast<UINT>(raw.size()), static_cast<UINT>(std::size(ids) - 1)};
  OleValue result;
  ASSERT_EQ(tesovia->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &given, &result.Raw(), nullptr, nullptr), S_OK);
  const tsv::db::dao::LateBound entry(tsv::db::dao::ObjectOf(result.Raw()));
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"Documento").Raw())), "NF 7");
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"Historico").Raw())), "POR NOME");
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"DataId").Raw())), "20080705000000001");
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"CodCentroCusto").Raw())), "") << "left out";

  const wchar_t* wrong[] = {L"FazerLancamentoTS", L"Quantia"};
  EXPECT_EQ(tesovia->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(wrong), 2, 0, ids), DISP_E_UNKNOWNNAME);
  given = {&raw.back(), nullptr, 1, 0};
  EXPECT_EQ(tesovia->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &given, nullptr, nullptr, nullptr),
            DISP_E_PARAMNOTOPTIONAL);
}

TEST(EarlyBinding, ThreadsHaveSessionsOfTheirOwn) {
  const Apartment apartment;
  const Company mine;
  const auto tesovia = LoggedIn(mine);
  std::thread([] {
    const Apartment other;
    const auto stranger = Create<_Tesovia>(CLSID_Tesovia);
    ComPointer<_CLancamento> entry;
    EXPECT_EQ(Post(*stranger.Get(), "1.1", entry.Receive()), static_cast<HRESULT>(TS_ERRO_NAO_INICIALIZADO));
    const Company theirs;
    EXPECT_EQ(stranger->InicializarTS(Bstr(theirs.Path()), Bstr("ana"), Bstr("segredo")), S_OK);
    EXPECT_EQ(Post(*stranger.Get(), "1.2", entry.Receive()), S_OK);
    long id = 0;
    EXPECT_EQ(entry->get_Id(&id), S_OK);
    EXPECT_EQ(id, 1);
  }).join();
  ComPointer<_CLancamento> entry;
  EXPECT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
}

TEST(EarlyBinding, TheServerStaysLoaded) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  Create<_CBaixa>(CLSID_CBaixa);
  CoFreeUnusedLibrariesEx(0, 0);
  const HMODULE server = GetModuleHandleW(L"TsvLib2.dll");
  ASSERT_NE(server, nullptr);
  FreeLibrary(server);
  FreeLibrary(server);
  ComPointer<_CLancamento> entry;
  EXPECT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
}

LateBound Late(const auto& object) { return LateBound(ComPointer<IDispatch>::Sharing(object.Get())); }

template <typename Action>
Erro RaisedBy(Action&& action) {
  try {
    action();
  } catch (const Erro& erro) {
    return erro;
  }
  return Erro(0);
}

template <typename... Objects>
LateBound::Arguments Passing(const Objects&... objects) {
  LateBound::Arguments arguments;
  (arguments.push_back(OleValue(objects.Object())), ...);
  return arguments;
}

OleValue Decimal(std::uint64_t digits, BYTE decimals) {
  OleValue value;
  value.Raw().decVal.Lo64 = digits;
  value.Raw().decVal.scale = decimals;
  value.Raw().vt = VT_DECIMAL;
  return value;
}

TEST(LateBinding, AFieldOfARecordsetStandsForItsValue) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  ComPointer<_CLancamento> posted;
  ASSERT_EQ(Post(*tesovia.Get(), "1.1", posted.Receive()), S_OK);
  const LateBound entry = Late(posted);
  const LateBound ledger = Late(tesovia);
  const LateBound rows =
      ledger.ObjectFrom(L"AbrirRecordsetTS", ArgumentsOf(std::string("Select * From Lancamentos"), std::int32_t{4}));
  const auto field = [&](std::string name) { return rows.ObjectFrom(L"Fields", ArgumentsOf(std::move(name))); };

  entry.Put(L"Valor", OleValue(Variant(std::int32_t{5})));
  entry.Put(L"Valor", OleValue(field("Valor").Object()));
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"Valor").Raw())), "123,45");
  entry.Put(L"DataVencimento", OleValue(field("Data").Object()));
  EXPECT_EQ(ToText(ValueOf(entry.Get(L"DataVencimento").Raw())), "05/07/2008");
  EXPECT_EQ(RaisedBy([&] { entry.Put(L"Valor", OleValue(entry.Object())); }).Numero(), 13) << "it has no value";
  EXPECT_EQ(RaisedBy([&] { field("Valor").Put(L"Value", OleValue(Variant(std::int32_t{99}))); }).Numero(), 3027);
  EXPECT_EQ(ToText(ValueOf(field("Valor").Get(L"Value").Raw())), "123,45");
  ledger.Call(L"ExcluirLancamentoTS", Passing(field("Id"), field("IdConcorrencia")));
}

TEST(LateBinding, NumbersKeepTheirDecimals) {
  const Apartment apartment;
  const LateBound entry = Late(Create<_CLancamento>(CLSID_CLancamento));
  const auto kept = [&](OleValue value) {
    entry.Put(L"Valor", std::move(value));
    return ToText(ValueOf(entry.Get(L"Valor").Raw()));
  };
  OleValue single;
  single.Raw().fltVal = 1234.56F;
  single.Raw().vt = VT_R4;
  EXPECT_EQ(kept(std::move(single)), "1234,56");
  EXPECT_EQ(kept(Decimal(9'999'999'999'999'999, 2)), "99999999999999,99");
  EXPECT_EQ(kept(Decimal(123'456'789, 6)), "123,4568") << "more decimals than an amount has";
}

TEST(LateBinding, ArgumentsThatNoParameterTakesAreRefused) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  ComPointer<_CLancamento> entry;
  ASSERT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
  const wchar_t* names[] = {L"ExcluirLancamentoTS", L"IdLancamento", L"IdConcorrencia"};
  DISPID ids[std::size(names)] = {};
  ASSERT_EQ(tesovia->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(names), std::size(names), 0, ids), S_OK);
  VARIANT numbers[4] = {};
  for (VARIANT& number : numbers) number.vt = VT_I4;
  numbers[1].lVal = numbers[3].lVal = 1;
  const auto remove = [&](UINT count, std::vector<DISPID> named) {
    DISPPARAMS given = {numbers, named.data(), count, static_cast<UINT>(named.size())};
    return tesovia->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &given, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(remove(4, {}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(remove(2, {7}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(remove(2, {ids[1]}), DISP_E_PARAMNOTFOUND) << "given by its place too";
  EXPECT_EQ(remove(2, {ids[2], ids[2]}), DISP_E_PARAMNOTFOUND) << "given twice";
  EXPECT_EQ(remove(2, {DISPID_PROPERTYPUT}), DISP_E_PARAMNOTFOUND) << "no property";
  EXPECT_EQ(remove(2, {}), S_OK);
}

TEST(LateBinding, ErrorsComeFromTheRoutineThatTookTheArguments) {
  const Apartment apartment;
  const Company company;
  const LateBound ledger = Late(Create<_Tesovia>(CLSID_Tesovia));
  const auto refusal = [&](const wchar_t* member) {
    return RaisedBy([&] { ledger.Call(member, Passing(LateBound())); });
  };
  EXPECT_EQ(refusal(L"BaixarLancamentoTS").Numero(), static_cast<std::int32_t>(TS_ERRO_NAO_INICIALIZADO));
  EXPECT_EQ(refusal(L"FazerTransferenciaTS").Numero(), static_cast<std::int32_t>(TS_ERRO_NAO_INICIALIZADO));
  ledger.Call(L"InicializarTS", ArgumentsOf(std::string(company.Path()), std::string("ana"), std::string("segredo")));
  EXPECT_EQ(refusal(L"BaixarLancamentoTS").Numero(), 91);
  EXPECT_EQ(refusal(L"BaixarLancamentoTS").Origem(), "em Tesovia.BaixarLancamentoTS");
  EXPECT_EQ(refusal(L"FazerTransferenciaTS").Numero(), 91);
  EXPECT_EQ(refusal(L"FazerTransferenciaTS").Origem(), "em Tesovia.FazerTransferenciaTS");

  const LateBound entry = Late(Create<_CLancamento>(CLSID_CLancamento));
  const LateBound rows =
      ledger.ObjectFrom(L"AbrirRecordsetTS", ArgumentsOf(std::string("Select * From Lancamentos"), std::int32_t{4}));
  rows.Call(L"Close");
  const Erro closed = RaisedBy([&] { entry.Call(L"CarregarDeRegistro", Passing(rows)); });
  EXPECT_EQ(closed.Numero(), 3420);
  EXPECT_EQ(closed.Origem(), "Em CLancamento.CarregarDeRegistro");
  const Erro none = RaisedBy([&] { entry.Call(L"CarregarDeRegistro", Passing(LateBound())); });
  EXPECT_EQ(none.Numero(), 91);
  EXPECT_EQ(none.Origem(), "Em CLancamento.CarregarDeRegistro");
}

TEST(LateBinding, AResultThatNobodyTakesIsReleased) {
  const Apartment apartment;
  const Company company;
  {
    const auto tesovia = LoggedIn(company);
    // A script's statement that ignores what the method returns.
    const wchar_t* name = L"FazerLancamentoTS";
    DISPID member = 0;
    ASSERT_EQ(tesovia->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(&name), 1, 0, &member), S_OK);
    auto values = ArgumentsOf(std::string("0"), std::string("1.1"), std::string("h"), std::int32_t{7}, Day(2008, 7, 5),
                              Day(2008, 7, 5));
    std::vector<VARIANT> raw;
    for (OleValue& value : values) raw.push_back(value.Raw());
    DISPPARAMS given = {raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
    EXPECT_EQ(tesovia->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &given, nullptr, nullptr, nullptr), S_OK);
  }
  using CanUnload = HRESULT(STDAPICALLTYPE*)();
  const auto canUnload = reinterpret_cast<CanUnload>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"TsvLib2.dll"), "DllCanUnloadNow")));
  ASSERT_NE(canUnload, nullptr);
  EXPECT_EQ(canUnload(), S_OK);
}

TEST(EarlyBinding, APendingEndOfTheProgramOutlivesAnOperation) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  PostQuitMessage(7);
  ComPointer<_CLancamento> entry;
  EXPECT_EQ(Post(*tesovia.Get(), "1.1", entry.Receive()), S_OK);
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) DispatchMessageW(&message);
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7U);
}

// Answers the message box that the thread shows next, and keeps its text.
class BoxReader {
 public:
  BoxReader() { hook_ = SetWindowsHookExW(WH_MSGFILTER, Answer, nullptr, GetCurrentThreadId()); }
  ~BoxReader() { UnhookWindowsHookEx(hook_); }

  static inline std::string text;
  static inline std::function<void()> meanwhile;

 private:
  // Called with each message of the box, which by then has its text.
  static LRESULT CALLBACK Answer(int code, WPARAM unused, LPARAM message) {
    const HWND box = code == MSGF_DIALOGBOX ? GetAncestor(reinterpret_cast<MSG*>(message)->hwnd, GA_ROOT) : nullptr;
    if (box) Read(box);
    return CallNextHookEx(nullptr, code, unused, message);
  }

  static void Read(HWND box) {
    constexpr int kTextOfTheBox = 0xFFFF;
    wchar_t shown[512] = {};
    if (GetDlgItemTextW(box, kTextOfTheBox, shown, 512) == 0) return;
    OleValue bstr;
    bstr.Raw().bstrVal = SysAllocString(shown);
    bstr.Raw().vt = VT_BSTR;
    text = TextOf(bstr.Raw().bstrVal);
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    EndDialog(box, IDOK);
  }

  HHOOK hook_;
};

TEST(EarlyBinding, ShowsABoxWhenTheTransactionIsOver) {
  const Apartment apartment;
  const Company company;
  const auto tesovia = LoggedIn(company);
  const BoxReader reader;
  bool othersCouldWrite = false;
  BoxReader::meanwhile = [&] {
    company.Execute("UPDATE Serial SET Serial = 41");
    othersCouldWrite = true;
  };
  ComPointer<_CLancamento> entry;
  EXPECT_EQ(Post(*tesovia.Get(), "9", entry.Receive()), static_cast<HRESULT>(TS_ERRO_LOGIN));
  EXPECT_TRUE(BoxReader::text.starts_with("Não foi possível incluir o lançamento.\n")) << BoxReader::text;
  EXPECT_TRUE(othersCouldWrite);
  EXPECT_EQ(DescriptionOfLastError(), "");
}

}  // namespace
