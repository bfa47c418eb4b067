'types: unBudget=Budget,rapport=Rapport
' Alerte budget : liste les budgets dépassés et montre le rapport.
Option Explicit

Dim unBudget, rapport, i, texte

texte = ""
For i = 1 To Dossier.Budgets.Nombre
    Set unBudget = Dossier.Budgets.Item(i)
    If unBudget.Depasse(Date, 5) Then
        texte = texte & unBudget.Categorie.NomComplet & " : "
        texte = texte & FormatCurrency(-unBudget.Reste(Date)) & vbCrLf
    End If
Next

If Len(texte) = 0 Then
    MsgBox "Tous les budgets sont tenus.", vbInformation
Else
    MsgBox texte, vbExclamation + vbOKOnly, "Budgets dépassés"
    Set rapport = Dossier.Rapports.Ajouter("Budgets", zefRapportBudget, zefAvecGraphique + zefPaysage)
    rapport.Graphique.Tracer zefBarres, vbRed
    rapport.Afficher
End If

' La catégorie du dernier achat, et ce qu'il lui reste ce mois-ci
Resultat = ZEF.Dossier.Comptes.Item(1).Ecritures.Derniere.Categorie.Budget.Periodes.Courante.Realise
