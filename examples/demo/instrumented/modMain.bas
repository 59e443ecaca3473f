Attribute VB_Name = "modMain"
Option Explicit

' Orders - a small order and invoice calculator.
' Entry point and the state the whole application shares.

Public Declare Function GetTickCount Lib "kernel32" () As Long

Public gInvoice As CInvoice
Public gStartTicks As Long

Private Const zolModuleIndex As Long = 2 'ID
Public Sub Main()
    zolProfiler.zolProcIn 7
    zolProfiler.zolExecuteLine 26
    gStartTicks = GetTickCount()
    zolProfiler.zolExecuteLine 27
    Set gInvoice = New CInvoice
    zolProfiler.zolExecuteLine 28
    gInvoice.Customer = "Müller & Söhne"
    zolProfiler.zolExecuteLine 29
    LoadSampleLines gInvoice
    zolProfiler.zolExecuteLine 30
    frmOrder.Show
zolProfiler.zolExecuteLine 31
zolProfiler.zolProcOut 7
End Sub

' Fills an invoice with a few lines so that the form has something to show.
Public Sub LoadSampleLines(ByVal inv As CInvoice)
    zolProfiler.zolProcIn 8
    Dim i As Long
    zolProfiler.zolExecuteLine 32
    For i = 1 To 5
        zolProfiler.zolExecuteLine 33
        inv.AddLine "Article " & CStr(i), i * 3, 9.95 + i, tcStandard
    Next i
    zolProfiler.zolExecuteLine 34
    inv.AddLine "Cookbook", 1, 24.5, tcReduced
    zolProfiler.zolExecuteLine 35
    inv.AddLine "Delivery", 1, 12.5, tcExempt ' flat fee, no discount
zolProfiler.zolExecuteLine 36
zolProfiler.zolProcOut 8
End Sub

Public Function ElapsedMs() As Long
    zolProfiler.zolProcIn 9 'D
    ElapsedMs = GetTickCount() - gStartTicks
zolProfiler.zolProcOut 9
End Function
