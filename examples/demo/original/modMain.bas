Attribute VB_Name = "modMain"
Option Explicit

' Orders - a small order and invoice calculator.
' Entry point and the state the whole application shares.

Public Declare Function GetTickCount Lib "kernel32" () As Long

Public gInvoice As CInvoice
Public gStartTicks As Long

Public Sub Main()
    gStartTicks = GetTickCount()
    Set gInvoice = New CInvoice
    gInvoice.Customer = "Müller & Söhne"
    LoadSampleLines gInvoice
    frmOrder.Show
End Sub

' Fills an invoice with a few lines so that the form has something to show.
Public Sub LoadSampleLines(ByVal inv As CInvoice)
    Dim i As Long
    For i = 1 To 5
        inv.AddLine "Article " & CStr(i), i * 3, 9.95 + i, tcStandard
    Next i
    inv.AddLine "Cookbook", 1, 24.5, tcReduced
    inv.AddLine "Delivery", 1, 12.5, tcExempt ' flat fee, no discount
End Sub

Public Function ElapsedMs() As Long
    ElapsedMs = GetTickCount() - gStartTicks
End Function
