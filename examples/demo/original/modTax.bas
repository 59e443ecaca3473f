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

Public Function TaxRate(ByVal category As TaxCategory) As Double
    Select Case category
    Case tcStandard
        TaxRate = STANDARD_RATE
    Case tcReduced
        TaxRate = REDUCED_RATE
    Case Else
        TaxRate = 0
    End Select
End Function

Public Function TaxFor(ByVal amount As Currency, _
                       ByVal category As TaxCategory) As Currency
    If amount <= 0 Then Exit Function
    Rem Rounded per line, as the tax office asks
    TaxFor = RoundHalfEven(amount * TaxRate(category), 2)
End Function

Public Function CategoryName$(ByVal category As TaxCategory)
    Select Case category
    Case tcStandard: CategoryName$ = "Standard"
    Case tcReduced: CategoryName$ = "Reduced"
    Case Else: CategoryName$ = "Exempt"
    End Select
End Function
