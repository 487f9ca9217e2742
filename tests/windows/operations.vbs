' One operation of each kind. Argument: the path of a ledger with the company of the tests.
Option Explicit
Dim tesovia, dia, entrada, outra, baixa, pedido, pernas
Set tesovia = CreateObject("TesoviaLib2.Tesovia")
tesovia.InicializarTS Host.Argumento(1), "ana", "segredo"
dia = DateSerial(2008, 7, 5)
Set entrada = tesovia.FazerLancamentoTS(dia, dia, 100, "Um", "1.1", "0", "1", 1)
Set outra = tesovia.FazerLancamentoTS(dia, dia, -30, "Dois", "1.1", "0")
Set baixa = CreateObject("TesoviaLib2.CBaixa")
baixa.TipoBaixa = 1
baixa.IdLancamento = entrada.Id
baixa.ValorBaixado = entrada.Valor
baixa.DataRealizacao = dia + 1
tesovia.BaixarLancamentoTS baixa
Set pedido = CreateObject("TesoviaLib2.CTransferencia")
pedido.CodContaOrigem = "1.1"
pedido.CodContaDestino = "1.2"
pedido.Valor = 25
pedido.DataDaTransferencia = dia
pedido.HistoricoSaida = "sai"
pedido.HistoricoEntrada = "entra"
Set pernas = tesovia.FazerTransferenciaTS(pedido)
tesovia.EstornarLancamentoTS "volta", entrada.Id, 1
tesovia.ExcluirLancamentoTS outra.Id, 0
tesovia.ExcluirLancamentoTS pernas(1).Id, 0
entrada.CarregarDeRegistro tesovia.AbrirRecordsetTS("Select * From Lancamentos Where Id = 1", 4)
If entrada.Realizado <> "E" Then Err.Raise 1, "teste", "não foi carregado"
