#include "Failure.h"

#include "common/Errors.h"
#include "types/AutomationValues.h"

namespace tsv::com {
namespace {

void SetThreadError(REFIID id, const Erro& erro) {
  ComPointer<ICreateErrorInfo> creating;
  if (FAILED(CreateErrorInfo(creating.Receive()))) return;
  creating->SetGUID(id);
  const OleValue source{Variant(erro.Origem())};
  const OleValue description{Variant(erro.Descricao())};
  creating->SetSource(source.Raw().bstrVal);
  creating->SetDescription(description.Raw().bstrVal);
  ComPointer<IErrorInfo> error;
  if (SUCCEEDED(creating->QueryInterface(IID_IErrorInfo, error.ReceiveAny()))) SetErrorInfo(0, error.Get());
}

}  // namespace

HRESULT ReportFailure(REFIID id) noexcept {
  try {
    const Erro erro = Module1::CaughtError();
    SetThreadError(id, erro);
    return automation::HresultOf(erro.Numero());
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT TakeFailure(HRESULT result, EXCEPINFO* report) noexcept {
  ComPointer<IErrorInfo> error;
  if (!report || GetErrorInfo(0, error.Receive()) != S_OK) return result;
  *report = {};
  report->scode = result;
  error->GetSource(&report->bstrSource);
  error->GetDescription(&report->bstrDescription);
  return DISP_E_EXCEPTION;
}

}  // namespace tsv::com
