Attribute VB_Name = "modFormat"
Option Explicit

' Formatting helpers shared with the other sample projects.

Private Const zolModuleIndex As Long = 4 'ID
Public Function FormatMoney(ByVal value As Currency) As String
    zolProfiler.zolProcIn 13
    zolProfiler.zolExecuteLine 53
    FormatMoney = Format$(value, "#,##0.00") & " €"
zolProfiler.zolExecuteLine 54
zolProfiler.zolProcOut 13
End Function

' Banker's rounding to a number of decimals; don't use Round() on Currency here.
Public Function RoundHalfEven(ByVal value As Double, ByVal decimals As Long) As Double
    zolProfiler.zolProcIn 14
    Dim factor As Double
    zolProfiler.zolExecuteLine 55
    factor = 10 ^ decimals
    zolProfiler.zolExecuteLine 56
    RoundHalfEven = CDbl(CLng(value * factor)) / factor ' CLng rounds halves to even
zolProfiler.zolExecuteLine 57
zolProfiler.zolProcOut 14
End Function

Public Function PadRight(ByVal text As String, ByVal width As Long) As String
'zolProcIn 15
    zolProfiler.zolExecuteLine 58
    If Len(text) >= width Then
        zolProfiler.zolExecuteLine 59
        PadRight = Left$(text, width)
    Else
    zolProfiler.zolExecuteLine 60 'B
        zolProfiler.zolExecuteLine 61
        PadRight = text & Space$(width - Len(text))
    End If
zolProfiler.zolExecuteLine 62
End Function
