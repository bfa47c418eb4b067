' Épargne du mois : verse sur le livret ce qui dépasse une réserve.
Option Explicit

Const Reserve = 500

Dim courant, livret, surplus, reponse

Set courant = Dossier.Comptes.Item("Compte courant")
Set livret = Dossier.Comptes.Item("Livret")

surplus = courant.SoldeAu(Date, zefPointee + zefRapprochee) - Reserve
If surplus > 0 Then
    reponse = MsgBox("Verser " & FormatCurrency(surplus) & " sur le livret ?", vbYesNo + vbQuestion, "Épargne")
    If reponse = vbYes Then
        courant.Virer livret, surplus, Date, "Épargne de " & MonthName(Month(Date))
        courant.Afficher
    End If
Else
    ZEF.Journal "Pas de surplus ce mois-ci.", zefJournalInfo
End If
