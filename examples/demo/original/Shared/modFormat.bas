Attribute VB_Name = "modFormat"
Option Explicit

' Formatting helpers shared with the other sample projects.

Public Function FormatMoney(ByVal value As Currency) As String
    FormatMoney = Format$(value, "#,##0.00") & " €"
End Function

' Banker's rounding to a number of decimals; don't use Round() on Currency here.
Public Function RoundHalfEven(ByVal value As Double, ByVal decimals As Long) As Double
    Dim factor As Double
    factor = 10 ^ decimals
    RoundHalfEven = CDbl(CLng(value * factor)) / factor ' CLng rounds halves to even
End Function

Public Function PadRight(ByVal text As String, ByVal width As Long) As String
    If Len(text) >= width Then
        PadRight = Left$(text, width)
    Else
        PadRight = text & Space$(width - Len(text))
    End If
End Function
