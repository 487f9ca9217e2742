' The life of a small ledger, as a script sees it: every class and every public member.
' Argument: the path of a ledger with the company of the tests.
Option Explicit

Const dbOpenSnapshot = 4
Const BAIXA_TOTAL = 1
Const BAIXA_PARCIAL = 2
Const BAIXA_NAO_REALIZADO = 3
Const TS_ERRO_LANCAMENTO = -2147211504
Const TS_ERRO_EXCLUSAO = -2147211503
Const TS_ERRO_JA_BAIXADO = -2147211495
Const TS_ERRO_NAO_INICIALIZADO = -2147211498

Sub Confira(nome, obtido, esperado)
  If obtido <> esperado Then Err.Raise 1, "teste", nome & ": [" & obtido & "] em vez de [" & esperado & "]"
End Sub

Sub ConfiraErro(nome, numero, descricao, origem)
  Dim n, d, o
  n = Err.Number
  d = Err.Description
  o = Err.Source
  Err.Clear
  On Error GoTo 0
  Confira nome & ", número", n, numero
  Confira nome & ", descrição", d, descricao
  Confira nome & ", origem", o, origem
End Sub

Dim tesovia, dia, valor, historico, primeiro, segundo, terceiro, resultado
Set tesovia = CreateObject("TesoviaLib2.Tesovia")

On Error Resume Next
tesovia.ExcluirLancamentoTS 1, 0
ConfiraErro "antes de inicializar", TS_ERRO_NAO_INICIALIZADO, "Componente do Tesovia não inicializado.", _
            " Em Tesovia.ExcluirLancamentoTS"

tesovia.InicializarTS Host.Argumento(1), "ana", "segredo"

' Posting: literals, variables and expressions; the optional arguments given, omitted, and left out in between.
dia = DateSerial(2008, 7, 5)
valor = CCur(150.25)
historico = "Previsão à vista"
Set primeiro = tesovia.FazerLancamentoTS(dia, dia, valor, historico, "1.1", "0")
Confira "Historico", primeiro.Historico, "PREVISÃO À VISTA"
Confira "Valor", primeiro.Valor, valor
Confira "Id", primeiro.Id, 1
Confira "DataId", primeiro.DataId, "20080705000000001"
Confira "Realizado", primeiro.Realizado, "?"
Set segundo = tesovia.FazerLancamentoTS(dia + 5, dia, 10 * 3, "Com tudo", "1.1.2", "00", "1.1", 1, "D-1")
Confira "CodCentroCusto", segundo.CodCentroCusto, "1.1"
Confira "IdParceiroComl", segundo.IdParceiroComl, 1
Confira "Documento", segundo.Documento, "D-1"
Confira "SaldoConta", segundo.SaldoConta, CCur(30)
Confira "SaldoRecDesp", segundo.SaldoRecDesp, CCur(30)
Confira "SaldoCentroCusto", segundo.SaldoCentroCusto, CCur(30)
Confira "SaldoParceiroComl", segundo.SaldoParceiroComl, CCur(30)
Confira "SaldoGlobal", segundo.SaldoGlobal, CCur(180.25)
Set terceiro = tesovia.FazerLancamentoTS(dia + 9, dia, "-40", "Com parceiro", "1.1", "0", , 2)
Confira "parceiro sem centro", terceiro.IdParceiroComl, 2
Confira "valor de um texto", terceiro.Valor, CCur(-40)

' Refusals reach the script with number, description and origin, accents and line feed included.
On Error Resume Next
tesovia.FazerLancamentoTS dia, dia, 10, "Sem tipo", "1.1", "0013"
ConfiraErro "tipo que não existe", TS_ERRO_LANCAMENTO, "Receita/despesa informada para o lançamento não existe.", _
            " Em Tesovia.ExcluirLancamentoTS"
On Error Resume Next
tesovia.ExcluirLancamentoTS 1, 7
ConfiraErro "versão velha", TS_ERRO_EXCLUSAO, "O lançamento não foi localizado ou outro usuário o alterou " & _
            "enquanto você o acessava. A exclusão não se realizou.", " Em Tesovia.ExcluirLancamentoTS"
On Error Resume Next
primeiro.Documento = "1234567890123456"
ConfiraErro "documento longo", TS_ERRO_LANCAMENTO, "Documento não deve ter mais do que 15 caracteres.", _
            "em CLancamento.Documento"

' Settlement in part, on a later day; then the same again.
Dim baixa
Set baixa = CreateObject("TesoviaLib2.CBaixa")
baixa.TipoBaixa = BAIXA_PARCIAL
baixa.IdLancamento = primeiro.Id
baixa.IdConcorrencia = primeiro.IdConcorrencia
baixa.ValorBaixado = CCur(100)
baixa.DataRealizacao = dia + 7
Confira "TipoBaixa", baixa.TipoBaixa, BAIXA_PARCIAL
Confira "IdLancamento", baixa.IdLancamento, 1
Confira "IdConcorrencia da baixa", baixa.IdConcorrencia, 0
Confira "ValorBaixado", baixa.ValorBaixado, CCur(100)
Confira "DataRealizacao", baixa.DataRealizacao, dia + 7
Set resultado = tesovia.BaixarLancamentoTS(baixa)
Confira "baixado", resultado.Realizado, "S"
Confira "ValorPago", resultado.ValorPago, CCur(100)
Confira "versão nova", resultado.IdConcorrencia, 1
Confira "chave nova", resultado.DataId, "20080712000000001"
baixa.IdConcorrencia = 1
On Error Resume Next
tesovia.BaixarLancamentoTS baixa
ConfiraErro "já baixado", TS_ERRO_JA_BAIXADO, "O lançamento já está baixado.", "em CLancamento.Documento"

' Not realised, and in full.
Set baixa = CreateObject("TesoviaLib2.CBaixa")
baixa.TipoBaixa = BAIXA_NAO_REALIZADO
baixa.IdLancamento = terceiro.Id
baixa.ValorBaixado = terceiro.Valor
baixa.DataRealizacao = terceiro.Data
Confira "não realizado", tesovia.BaixarLancamentoTS(baixa).Realizado, "N"
baixa.TipoBaixa = BAIXA_TOTAL
baixa.IdLancamento = segundo.Id
baixa.ValorBaixado = segundo.Valor
baixa.DataRealizacao = segundo.Data
Confira "total", tesovia.BaixarLancamentoTS(baixa).ValorPago, CCur(30)

' A transfer: both legs, walked over and by place.
Dim pedido, pernas, perna, soma
Set pedido = CreateObject("TesoviaLib2.CTransferencia")
pedido.CodContaOrigem = "1.1"
pedido.CodContaDestino = "1.2"
pedido.Valor = 25
pedido.DataDaTransferencia = dia
pedido.HistoricoSaida = "sai"
pedido.HistoricoEntrada = "entra"
pedido.DocumentoSaida = "S-1"
pedido.DocumentoEntrada = "E-1"
Confira "CodContaOrigem", pedido.CodContaOrigem & pedido.CodContaDestino, "1.11.2"
Confira "Valor do pedido", pedido.Valor, CCur(25)
Confira "DataDaTransferencia", pedido.DataDaTransferencia, dia
Confira "históricos", pedido.HistoricoSaida & pedido.HistoricoEntrada, "saientra"
Confira "documentos", pedido.DocumentoSaida & pedido.DocumentoEntrada, "S-1E-1"
Set pernas = tesovia.FazerTransferenciaTS(pedido)
soma = 0
For Each perna In pernas
  soma = soma * 10 + perna.Transferencia
Next
Confira "pernas", soma, 12
Confira "Count", pernas.Count, 2
Confira "Item", pernas.Item(1).Valor, CCur(-25)
Confira "item sem nome", pernas(2).Valor, CCur(25)
pernas.Remove 1
pernas.Add primeiro
Confira "Add e Remove", pernas(2).Id, primeiro.Id
Set resultado = tesovia.EstornarLancamentoTS("desfaz", pernas(1).Id, 0)
Confira "estorno de transferência não devolve lançamento", resultado Is Nothing, True

' Reversal, deletion.
Set resultado = tesovia.EstornarLancamentoTS("engano", segundo.Id, 1)
Confira "Estorno", resultado.Estorno, True
Confira "histórico do estorno", resultado.Historico, "ENGANO"
tesovia.ExcluirLancamentoTS primeiro.Id, 1

' An entry of the client's own: all that can be set, copied and checked.
Dim meu, copia
Set meu = CreateObject("TesoviaLib2.CLancamento")
meu.Id = 5
meu.CodConta = " 1.1 "
meu.CodRecDesp = "0"
meu.Valor = 12.5
meu.DataId = "x"
meu.Data = dia
meu.Documento = "d"
meu.Historico = "h"
meu.Estorno = True
meu.Estornado = True
meu.IdUsuario = 7
meu.Transferencia = 2
meu.Realizado = "S"
meu.IdConcorrencia = 3
meu.CodCentroCusto = "1"
meu.IdParceiroComl = 2
meu.SaldoConta = 1
meu.SaldoRecDesp = 2
meu.SaldoCentroCusto = 3
meu.SaldoParceiroComl = 4
meu.SaldoGlobal = 5
meu.DataReferencia = dia
meu.DataVencimento = "05/07/2008"
meu.ValorPago = 6
Confira "Validar", meu.Validar, True
Set copia = meu.Copiar
meu.CodConta = "2"
Confira "cópia", copia.CodConta & copia.CodRecDesp & copia.Historico & copia.Realizado, "1.10HS"
Confira "números da cópia", copia.Id & copia.IdUsuario & copia.Transferencia & copia.IdConcorrencia, "5723"
Confira "saldos da cópia", copia.SaldoConta + copia.SaldoRecDesp + copia.SaldoCentroCusto + _
        copia.SaldoParceiroComl + copia.SaldoGlobal + copia.ValorPago, CCur(21)
Confira "datas da cópia", copia.DataReferencia = dia And copia.DataVencimento = "05/07/2008", True
Confira "marcas da cópia", copia.Estorno And copia.Estornado, True

' A recordset, walked over as DAO's are; it fills an entry.
Dim linhas, tabela, campo, nomes
Set linhas = tesovia.AbrirRecordsetTS("Select * From Lancamentos Order By DataId", dbOpenSnapshot)
Confira "RecordCount", linhas.RecordCount, 7
soma = CCur(0)
Do Until linhas.EOF
  If linhas.Fields("Realizado").Value <> "N" Then soma = soma + linhas("Valor")
  linhas.MoveNext
Loop
Confira "soma", soma, CCur(0)
linhas.MoveFirst
Confira "BOF", linhas.BOF, False
linhas.MoveLast
linhas.MovePrevious
copia.CarregarDeRegistro linhas
Confira "CarregarDeRegistro", copia.Id, linhas.Fields("Id").Value
Confira "Name", linhas.Fields(0).Name, "Id"
Confira "Fields.Count", linhas.Fields.Count > 20, True
nomes = ""
For Each campo In linhas.Fields
  If campo.Name = "Id" Or campo.Name = "Historico" Then nomes = nomes & campo.Name & "=" & campo.Value & " "
Next
Confira "For Each sobre Fields", nomes, "Id=" & copia.Id & " Historico=" & copia.Historico & " "
linhas.MoveFirst
tabela = linhas.GetRows(2)
Confira "GetRows", UBound(tabela, 2), 1
linhas.Close

' Two objects share one ledger; releasing one closes it for the other.
Dim outro
Set outro = CreateObject("TesoviaLib2.Tesovia")
Confira "a mesma sessão", outro.AbrirRecordsetTS("Select Serial From Serial", dbOpenSnapshot)("Serial").Value, 8
Set outro = Nothing
On Error Resume Next
tesovia.AbrirRecordsetTS "Select Serial From Serial", dbOpenSnapshot
ConfiraErro "depois de soltar o outro", TS_ERRO_NAO_INICIALIZADO, "Componente do Tesovia não inicializado.", _
            "em CLancamento.Documento"
WScript.Echo "história completa: lançamentos, baixas, transferência, estornos e exclusão"
