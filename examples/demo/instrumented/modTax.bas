Attribute VB_Name = "modTax"
Option Explicit

' VAT rates by category of goods.
Public Enum TaxCategory
    tcStandard = 0
    tcReduced = 1
    tcExempt = 2
End Enum

Private Const STANDARD_RATE As Double = 0.2
Private Const REDUCED_RATE As Double = 0.055

Private Const zolModuleIndex As Long = 3 'ID
Public Function TaxRate(ByVal category As TaxCategory) As Double
    zolProfiler.zolProcIn 10
    zolProfiler.zolExecuteLine 37
    Select Case category
    Case tcStandard
    zolProfiler.zolExecuteLine 38 'B
        zolProfiler.zolExecuteLine 39
        TaxRate = STANDARD_RATE
    Case tcReduced
    zolProfiler.zolExecuteLine 40 'B
        zolProfiler.zolExecuteLine 41
        TaxRate = REDUCED_RATE
    Case Else
    zolProfiler.zolExecuteLine 42 'B
        zolProfiler.zolExecuteLine 43
        TaxRate = 0
    End Select
zolProfiler.zolExecuteLine 44
zolProfiler.zolProcOut 10
End Function

Public Function TaxFor(ByVal amount As Currency, _
                       ByVal category As TaxCategory) As Currency
    zolProfiler.zolProcIn 11 'C
'zolLine 45:    If amount <= 0 Then Exit Function
    zolProfiler.zolExecuteLine 45: If amount <= 0 Then zolProfiler.zolProcOut 11: Exit Function
    Rem Rounded per line, as the tax office asks
    zolProfiler.zolExecuteLine 46
    TaxFor = RoundHalfEven(amount * TaxRate(category), 2)
zolProfiler.zolExecuteLine 47
zolProfiler.zolProcOut 11
End Function

Public Function CategoryName$(ByVal category As TaxCategory)
    zolProfiler.zolProcIn 12
    zolProfiler.zolExecuteLine 48
    Select Case category
    Case tcStandard: CategoryName$ = "Standard"
    zolProfiler.zolExecuteLine 49 'B
    Case tcReduced: CategoryName$ = "Reduced"
    zolProfiler.zolExecuteLine 50 'B
    Case Else: CategoryName$ = "Exempt"
    zolProfiler.zolExecuteLine 51 'B
    End Select
zolProfiler.zolExecuteLine 52
zolProfiler.zolProcOut 12
End Function
