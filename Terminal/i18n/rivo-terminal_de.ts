<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AmountPad</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>BasketLine</name>
    <message>
        <source>printed</source>
        <translation>gedruckt</translation>
    </message>
    <message>
        <source>being printed</source>
        <translation>wird gedruckt</translation>
    </message>
    <message>
        <source>%1, return</source>
        <translation>%1, hin und zurück</translation>
    </message>
    <message>
        <source>Remove this ticket</source>
        <translation>Diese Fahrkarte entfernen</translation>
    </message>
</context>
<context>
    <name>BasketPanel</name>
    <message>
        <source>Basket</source>
        <translation>Warenkorb</translation>
    </message>
    <message numerus="yes">
        <source>%n ticket(s)</source>
        <translation>
            <numerusform>%n Fahrkarte</numerusform>
            <numerusform>%n Fahrkarten</numerusform>
        </translation>
    </message>
    <message>
        <source>Clear the basket</source>
        <translation>Warenkorb leeren</translation>
    </message>
    <message>
        <source>Tap a tile to add a ticket</source>
        <translation>Kachel antippen</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Druck läuft</translation>
    </message>
    <message>
        <source>Cash</source>
        <translation>Bar</translation>
    </message>
    <message>
        <source>Card</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>Remove all tickets from the basket?</source>
        <translation>Alle Fahrkarten aus dem Warenkorb entfernen?</translation>
    </message>
    <message>
        <source>Remove all</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>It is out</source>
        <translation>Ist gedruckt</translation>
    </message>
    <message>
        <source>Is ticket %1 out?</source>
        <translation>Ist Fahrkarte %1 gedruckt?</translation>
    </message>
    <message>
        <source>Print (%1)</source>
        <comment>as a button, how many tickets</comment>
        <translation>Drucken (%1)</translation>
    </message>
    <message numerus="yes">
        <source>Print %n ticket(s)?</source>
        <translation>
            <numerusform>%n Fahrkarte drucken?</numerusform>
            <numerusform>%n Fahrkarten drucken?</numerusform>
        </translation>
    </message>
    <message>
        <source>It will not be printed again.</source>
        <translation>Sie wird nicht noch einmal gedruckt.</translation>
    </message>
    <message>
        <source>Those that are out already come out twice.</source>
        <translation>Was schon gedruckt ist, kommt noch einmal heraus.</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>In cash</source>
        <translation>Bar</translation>
    </message>
    <message>
        <source>Amount given</source>
        <translation>Gegebener Betrag</translation>
    </message>
    <message>
        <source>Last sale again</source>
        <translation>Letzter Verkauf</translation>
    </message>
    <message>
        <source>Paid, but printing was interrupted.</source>
        <translation>Bezahlt, aber der Druck wurde unterbrochen.</translation>
    </message>
</context>
<context>
    <name>CardPayment</name>
    <message>
        <source>Not paid: %1</source>
        <translation>Nicht bezahlt: %1</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Go on</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Go on without knowing whether the card was charged?</source>
        <translation>Weiter, ohne zu wissen, ob die Karte belastet wurde?</translation>
    </message>
    <message>
        <source>If it was, the card terminal gives the money back.</source>
        <translation>Falls ja, erstattet das Kartenterminal den Betrag.</translation>
    </message>
</context>
<context>
    <name>CardTerminal</name>
    <message>
        <source>The card cannot be read.</source>
        <translation>Die Karte ist nicht lesbar.</translation>
    </message>
    <message>
        <source>There is no card.</source>
        <translation>Es ist keine Karte da.</translation>
    </message>
    <message>
        <source>The card terminal could not do this.</source>
        <translation>Das Kartenterminal konnte das nicht ausführen.</translation>
    </message>
    <message>
        <source>This card cannot be used for this.</source>
        <translation>Diese Karte ist dafür nicht zugelassen.</translation>
    </message>
    <message>
        <source>The card terminal is full: end its day.</source>
        <translation>Das Kartenterminal ist voll: Kassenschnitt nötig.</translation>
    </message>
    <message>
        <source>The card terminal is not registered.</source>
        <translation>Das Kartenterminal ist nicht angemeldet.</translation>
    </message>
    <message>
        <source>The payment was stopped.</source>
        <translation>Die Zahlung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The card is blocked.</source>
        <translation>Die Karte ist gesperrt.</translation>
    </message>
    <message>
        <source>The card terminal takes another currency.</source>
        <translation>Das Kartenterminal rechnet in einer anderen Währung.</translation>
    </message>
    <message>
        <source>There is not enough money on the card.</source>
        <translation>Das Guthaben der Karte reicht nicht.</translation>
    </message>
    <message>
        <source>The chip of the card does not work.</source>
        <translation>Der Chip der Karte ist defekt.</translation>
    </message>
    <message>
        <source>The card has expired.</source>
        <translation>Die Karte ist abgelaufen.</translation>
    </message>
    <message>
        <source>This card is not accepted.</source>
        <translation>Diese Karte wird nicht angenommen.</translation>
    </message>
    <message>
        <source>The bank cannot be reached.</source>
        <translation>Die Bank ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The card terminal cannot do this.</source>
        <translation>Das Kartenterminal kann das nicht.</translation>
    </message>
    <message>
        <source>The card terminal has no key.</source>
        <translation>Dem Kartenterminal fehlt ein Schlüssel.</translation>
    </message>
    <message>
        <source>The card terminal was not understood.</source>
        <translation>Das Kartenterminal wurde nicht verstanden.</translation>
    </message>
    <message>
        <source>The card terminal is busy.</source>
        <translation>Das Kartenterminal ist beschäftigt.</translation>
    </message>
    <message>
        <source>The bank does not answer.</source>
        <translation>Die Bank antwortet nicht.</translation>
    </message>
    <message>
        <source>The payment was taken back already.</source>
        <translation>Die Zahlung wurde schon storniert.</translation>
    </message>
    <message>
        <source>The payment cannot be taken back.</source>
        <translation>Die Zahlung kann nicht storniert werden.</translation>
    </message>
    <message>
        <source>Confirm the amount</source>
        <translation>Betrag bestätigen</translation>
    </message>
    <message>
        <source>Enter the PIN</source>
        <translation>PIN eingeben</translation>
    </message>
    <message>
        <source>See the card terminal</source>
        <translation>Kartenterminal beachten</translation>
    </message>
    <message>
        <source>Not accepted</source>
        <translation>Nicht angenommen</translation>
    </message>
    <message>
        <source>Asking the bank</source>
        <translation>Anfrage bei der Bank</translation>
    </message>
    <message>
        <source>The payment is being taken back</source>
        <translation>Die Zahlung wird storniert</translation>
    </message>
    <message>
        <source>The card is not accepted</source>
        <translation>Die Karte wird nicht angenommen</translation>
    </message>
    <message>
        <source>The card has expired</source>
        <translation>Die Karte ist abgelaufen</translation>
    </message>
    <message>
        <source>Present the card</source>
        <translation>Karte vorhalten</translation>
    </message>
    <message>
        <source>Remove the card</source>
        <translation>Karte entnehmen</translation>
    </message>
    <message>
        <source>The card cannot be read</source>
        <translation>Die Karte ist nicht lesbar</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>The day is being closed</source>
        <translation>Kassenschnitt läuft</translation>
    </message>
    <message>
        <source>Wrong PIN</source>
        <translation>Falsche PIN</translation>
    </message>
    <message>
        <source>Declined by the card terminal (%1).</source>
        <translation>Vom Kartenterminal abgelehnt (%1).</translation>
    </message>
</context>
<context>
    <name>Certificates</name>
    <message>
        <source>no certificate in %1</source>
        <translation>kein Zertifikat in %1</translation>
    </message>
    <message>
        <source>no private key in %1</source>
        <translation>kein privater Schlüssel in %1</translation>
    </message>
    <message>
        <source>the certificate of the server is for another name</source>
        <translation>das Zertifikat des Servers ist für einen anderen Namen</translation>
    </message>
    <message>
        <source>the certificate of the server has expired</source>
        <translation>das Zertifikat des Servers ist abgelaufen</translation>
    </message>
    <message>
        <source>the certificate of the server is not valid yet</source>
        <translation>das Zertifikat des Servers ist noch nicht gültig</translation>
    </message>
    <message>
        <source>the certificate of the server is not trusted</source>
        <translation>dem Zertifikat des Servers wird nicht vertraut</translation>
    </message>
</context>
<context>
    <name>ClosedShift</name>
    <message>
        <source>Z report %1</source>
        <translation>Z-Bericht %1</translation>
    </message>
    <message>
        <source>Tickets</source>
        <translation>Fahrkarten</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Nummern</translation>
    </message>
    <message>
        <source>Paid by card</source>
        <translation>Mit Karte</translation>
    </message>
    <message>
        <source>Parcels</source>
        <translation>Pakete</translation>
    </message>
    <message>
        <source>Commission</source>
        <translation>Provision</translation>
    </message>
    <message>
        <source>Paid %1</source>
        <translation>Bezahlt %1</translation>
    </message>
    <message>
        <source>Not paid, %1 due</source>
        <translation>Unbezahlt, %1 offen</translation>
    </message>
    <message>
        <source>Hand over cash</source>
        <translation>Bargeld abgeben</translation>
    </message>
    <message>
        <source>Counted</source>
        <translation>Gezählt</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>counted amount, difference to what is due</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>Show report</source>
        <translation>Bericht zeigen</translation>
    </message>
    <message>
        <source>Card terminal</source>
        <translation>Kartenterminal</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>total of the card terminal, difference to the journal</comment>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>Confirmation</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>DeviceCard</name>
    <message>
        <source>No. %1</source>
        <translation>Nr. %1</translation>
    </message>
    <message>
        <source>no details</source>
        <translation>keine Angaben</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Serious</source>
        <translation>Ernst</translation>
    </message>
    <message>
        <source>Fault</source>
        <translation>Störung</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
</context>
<context>
    <name>DeviceEvent</name>
    <message>
        <source>notice</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>serious</source>
        <translation>ernst</translation>
    </message>
    <message>
        <source>fault</source>
        <translation>Störung</translation>
    </message>
</context>
<context>
    <name>DevicesPage</name>
    <message>
        <source>Simulated: choose what it reports.</source>
        <translation>Simuliert: wählen, was es meldet.</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Updating</source>
        <translation>Wird aktualisiert</translation>
    </message>
    <message>
        <source>Paper low</source>
        <translation>Wenig Papier</translation>
    </message>
    <message>
        <source>Weak signal</source>
        <translation>Schwaches Signal</translation>
    </message>
    <message>
        <source>Too hot</source>
        <translation>Zu heiß</translation>
    </message>
    <message>
        <source>Paper jam</source>
        <translation>Papierstau</translation>
    </message>
    <message>
        <source>Cover open</source>
        <translation>Klappe offen</translation>
    </message>
    <message>
        <source>Out of paper</source>
        <translation>Papier leer</translation>
    </message>
    <message>
        <source>No connection</source>
        <translation>Keine Verbindung</translation>
    </message>
    <message>
        <source>Connected: it reports by itself.</source>
        <translation>Verbunden: meldet sich selbst.</translation>
    </message>
</context>
<context>
    <name>FleetMap</name>
    <message>
        <source>This feed has no lines and no vehicles.</source>
        <translation>Diese Daten enthalten weder Linien noch Fahrzeuge.</translation>
    </message>
    <message>
        <source>Closer</source>
        <translation>Näher</translation>
    </message>
    <message>
        <source>Further away</source>
        <translation>Weiter weg</translation>
    </message>
    <message>
        <source>Show the whole line</source>
        <translation>Ganze Linie zeigen</translation>
    </message>
</context>
<context>
    <name>FleetPage</name>
    <message>
        <source>This feed has no vehicles.</source>
        <translation>Diese Daten enthalten keine Fahrzeuge.</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>Folgen</translation>
    </message>
    <message>
        <source>Radio off</source>
        <translation>Funk aus</translation>
    </message>
    <message>
        <source>%1 times the pace of the clock</source>
        <translation>%1-fache Geschwindigkeit der Uhr</translation>
    </message>
</context>
<context>
    <name>FloatPad</name>
    <message>
        <source>Opening float</source>
        <translation>Wechselgeld zu Beginn</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Eintragen</translation>
    </message>
    <message>
        <source>Counted</source>
        <translation>Gezählt</translation>
    </message>
</context>
<context>
    <name>HandOverPad</name>
    <message>
        <source>Hand over cash of Z report %1</source>
        <translation>Bargeld zu Z-Bericht %1 abgeben</translation>
    </message>
    <message>
        <source>Hand over</source>
        <translation>Abgeben</translation>
    </message>
    <message>
        <source>Due</source>
        <translation>Fällig</translation>
    </message>
    <message>
        <source>Counted</source>
        <translation>Gezählt</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Differenz</translation>
    </message>
    <message>
        <source>All of it</source>
        <translation>Alles</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Sell</source>
        <translation>Verkauf</translation>
    </message>
    <message>
        <source>Products</source>
        <translation>Produkte</translation>
    </message>
    <message>
        <source>Z report</source>
        <translation>Z-Bericht</translation>
    </message>
    <message>
        <source>Fleet</source>
        <translation>Flotte</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Ticket terminal</source>
        <translation>Fahrkartenterminal</translation>
    </message>
    <message>
        <source>DEMO</source>
        <translation>DEMO</translation>
    </message>
</context>
<context>
    <name>NotSoldList</name>
    <message>
        <source>%1: %2</source>
        <comment>a fare, and why it is not sold</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>NumberPad</name>
    <message>
        <source>Erase the last digit</source>
        <translation>Letzte Ziffer löschen</translation>
    </message>
</context>
<context>
    <name>PaidSale</name>
    <message>
        <source>Paid in cash</source>
        <translation>Bar bezahlt</translation>
    </message>
    <message>
        <source>Paid by card</source>
        <translation>Mit Karte bezahlt</translation>
    </message>
    <message>
        <source>Rounding</source>
        <translation>Rundung</translation>
    </message>
    <message>
        <source>Given</source>
        <translation>Gegeben</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Rückgeld</translation>
    </message>
</context>
<context>
    <name>PaperPopup</name>
    <message>
        <source>Close</source>
        <comment>what was opened</comment>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
</context>
<context>
    <name>PastSaleDetail</name>
    <message>
        <source>Paid in cash</source>
        <translation>Bar bezahlt</translation>
    </message>
    <message>
        <source>Paid by card</source>
        <translation>Mit Karte bezahlt</translation>
    </message>
    <message>
        <source>Given back</source>
        <translation>Zurückgegeben</translation>
    </message>
    <message>
        <source>Show ticket</source>
        <translation>Ansehen</translation>
    </message>
    <message>
        <source>Print copy</source>
        <translation>Kopie</translation>
    </message>
    <message>
        <source>Refund</source>
        <translation>Erstatten</translation>
    </message>
    <message>
        <source>Void sale</source>
        <translation>Stornieren</translation>
    </message>
    <message>
        <source>Void the last sale, %1?</source>
        <translation>Den letzten Verkauf über %1 stornieren?</translation>
    </message>
    <message>
        <source>Take the tickets back, and give the money back.</source>
        <translation>Fahrkarten zurücknehmen und das Geld zurückgeben.</translation>
    </message>
    <message>
        <source>Given</source>
        <translation>Gegeben</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Rückgeld</translation>
    </message>
    <message>
        <source>Show</source>
        <comment>the paper of a ticket</comment>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Copy</source>
        <comment>of a ticket, on paper</comment>
        <translation>Kopie</translation>
    </message>
    <message>
        <source>Void</source>
        <comment>take the last sale back</comment>
        <translation>Storno</translation>
    </message>
</context>
<context>
    <name>PastSalesPage</name>
    <message>
        <source>taken back</source>
        <translation>zurückgenommen</translation>
    </message>
    <message>
        <source>%1 of %2 taken back</source>
        <translation>%1 von %2 zurückgenommen</translation>
    </message>
    <message>
        <source>Back to the Z report</source>
        <translation>Zurück zum Z-Bericht</translation>
    </message>
    <message>
        <source>Sales of this shift</source>
        <translation>Verkäufe dieser Schicht</translation>
    </message>
    <message>
        <source>Nothing was sold in this shift.</source>
        <translation>In dieser Schicht wurde nichts verkauft.</translation>
    </message>
</context>
<context>
    <name>PastTicketLine</name>
    <message>
        <source>%1 %2, %3</source>
        <comment>ticket number, product, passenger</comment>
        <translation>%1 %2, %3</translation>
    </message>
    <message>
        <source>taken back</source>
        <translation>zurückgenommen</translation>
    </message>
    <message numerus="yes">
        <source>%n copy(ies)</source>
        <translation>
            <numerusform>%n Kopie</numerusform>
            <numerusform>%n Kopien</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PaymentPad</name>
    <message>
        <source>Amount given</source>
        <translation>Gegebener Betrag</translation>
    </message>
    <message>
        <source>Cash</source>
        <translation>Bar</translation>
    </message>
    <message>
        <source>Rounding</source>
        <translation>Rundung</translation>
    </message>
    <message>
        <source>To pay</source>
        <translation>Zu zahlen</translation>
    </message>
    <message>
        <source>Given</source>
        <translation>Gegeben</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Rückgeld</translation>
    </message>
</context>
<context>
    <name>ProblemsWindow</name>
    <message>
        <source>Ticket terminal</source>
        <translation>Fahrkartenterminal</translation>
    </message>
    <message>
        <source>The feed cannot be used. Nothing is sold.</source>
        <translation>Die Daten sind nicht verwendbar. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>The file of drivers cannot be used. Nothing is sold.</source>
        <translation>Die Fahrerdatei kann nicht verwendet werden. Es wird nichts verkauft.</translation>
    </message>
    <message>
        <source>The configuration cannot be used. Nothing is sold.</source>
        <translation>Die Konfiguration ist unbrauchbar. Es wird nichts verkauft.</translation>
    </message>
    <message>
        <source>Switch the terminal off and on. If this comes again, call the control centre and read the lines below to them.</source>
        <translation>Terminal aus- und wieder einschalten. Kommt das wieder: Leitstelle anrufen und die Zeilen unten vorlesen.</translation>
    </message>
</context>
<context>
    <name>ProductDetail</name>
    <message>
        <source>Passengers</source>
        <translation>Fahrgäste</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Preis</translation>
    </message>
    <message>
        <source>Discount</source>
        <translation>Ermäßigung</translation>
    </message>
    <message>
        <source>Way back</source>
        <translation>Rückfahrt</translation>
    </message>
    <message>
        <source>included</source>
        <translation>enthalten</translation>
    </message>
    <message>
        <source>not included</source>
        <translation>nicht enthalten</translation>
    </message>
    <message>
        <source>Paper ticket</source>
        <translation>Papierfahrkarte</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>Means of payment</source>
        <translation>Zahlungsmittel</translation>
    </message>
    <message>
        <source>Sales channels</source>
        <translation>Verkaufswege</translation>
    </message>
    <message>
        <source>Ticket materials</source>
        <translation>Fahrkartenträger</translation>
    </message>
    <message>
        <source>Product number</source>
        <translation>Produktnummer</translation>
    </message>
    <message>
        <source>In the basket</source>
        <translation>Im Warenkorb</translation>
    </message>
</context>
<context>
    <name>ProductsPage</name>
    <message>
        <source>This feed has no fare catalogue.</source>
        <translation>Diese Daten enthalten keinen Tarifkatalog.</translation>
    </message>
</context>
<context>
    <name>QuantityPad</name>
    <message>
        <source>How many tickets?</source>
        <translation>Wie viele Fahrscheine?</translation>
    </message>
    <message numerus="yes">
        <source>Add %n</source>
        <comment>tickets</comment>
        <translation>
            <numerusform>%n hinzu</numerusform>
            <numerusform>%n hinzu</numerusform>
        </translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Tickets</source>
        <translation>Fahrscheine</translation>
    </message>
    <message>
        <source>Together</source>
        <translation>Zusammen</translation>
    </message>
</context>
<context>
    <name>RefundPopup</name>
    <message>
        <source>Wrong ticket</source>
        <translation>Falsche Fahrkarte</translation>
    </message>
    <message>
        <source>Badly printed</source>
        <translation>Schlecht gedruckt</translation>
    </message>
    <message>
        <source>Ride cancelled</source>
        <translation>Fahrt fällt aus</translation>
    </message>
    <message>
        <source>Other reason</source>
        <translation>Anderer Grund</translation>
    </message>
    <message numerus="yes">
        <source>Refund %n ticket(s)?</source>
        <translation>
            <numerusform>%n Fahrkarte erstatten?</numerusform>
            <numerusform>%n Fahrkarten erstatten?</numerusform>
        </translation>
    </message>
    <message>
        <source>Refund ticket %1, %2?</source>
        <translation>Fahrkarte %1, %2, erstatten?</translation>
    </message>
    <message>
        <source>This ticket</source>
        <translation>Diese Fahrkarte</translation>
    </message>
    <message numerus="yes">
        <source>All %n ticket(s)</source>
        <translation>
            <numerusform>Alle (%n Fahrkarte)</numerusform>
            <numerusform>Alle (%n Fahrkarten)</numerusform>
        </translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Refund</source>
        <translation>Erstatten</translation>
    </message>
</context>
<context>
    <name>ReportPopup</name>
    <message>
        <source>Being printed</source>
        <translation>Wird gedruckt</translation>
    </message>
    <message>
        <source>Printed</source>
        <translation>Gedruckt</translation>
    </message>
</context>
<context>
    <name>RunningShift</name>
    <message numerus="yes">
        <source>%n ticket(s) for %1, of it %2 in cash. Shift %3 starts at once; a closed shift cannot be opened again.</source>
        <translation>
            <numerusform>%n Fahrkarte für %1, davon %2 bar. Schicht %3 beginnt sofort; eine abgeschlossene Schicht lässt sich nicht wieder öffnen.</numerusform>
            <numerusform>%n Fahrkarten für %1, davon %2 bar. Schicht %3 beginnt sofort; eine abgeschlossene Schicht lässt sich nicht wieder öffnen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Z report %1</source>
        <translation>Z-Bericht %1</translation>
    </message>
    <message>
        <source>Shift %1 is closed.</source>
        <translation>Schicht %1 ist abgeschlossen.</translation>
    </message>
    <message>
        <source>Running shift</source>
        <translation>Laufende Schicht</translation>
    </message>
    <message>
        <source>Tickets</source>
        <translation>Fahrkarten</translation>
    </message>
    <message>
        <source>Paid by card</source>
        <translation>Mit Karte</translation>
    </message>
    <message>
        <source>First ticket</source>
        <translation>Erste Fahrkarte</translation>
    </message>
    <message>
        <source>Last ticket</source>
        <translation>Letzte Fahrkarte</translation>
    </message>
    <message>
        <source>Cash to hand over</source>
        <translation>Abzugebendes Bargeld</translation>
    </message>
    <message>
        <source>There is no limit.</source>
        <translation>Ohne Grenze.</translation>
    </message>
    <message>
        <source>Limit %1</source>
        <translation>Grenze %1</translation>
    </message>
    <message>
        <source>Close shift</source>
        <translation>Abschließen</translation>
    </message>
    <message>
        <source>The limit of %1 is reached: close the shift and hand the cash over.</source>
        <translation>Die Grenze von %1 ist erreicht: Schicht abschließen und Bargeld abgeben.</translation>
    </message>
    <message>
        <source>The limit of %1 is reached: hand the cash over.</source>
        <translation>Die Grenze von %1 ist erreicht: Bargeld abgeben.</translation>
    </message>
    <message>
        <source>Sales</source>
        <comment>of the running shift</comment>
        <translation>Verkäufe</translation>
    </message>
    <message>
        <source>Void: %1 for %2</source>
        <translation>Storniert: %1 für %2</translation>
    </message>
    <message>
        <source>Refunded: %1 for %2</source>
        <translation>Erstattet: %1 für %2</translation>
    </message>
    <message>
        <source>Rounding: %1</source>
        <translation>Rundung: %1</translation>
    </message>
    <message>
        <source>Float: %1</source>
        <translation>Wechselgeld: %1</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Wechselgeld</translation>
    </message>
    <message>
        <source>Running shift, driver %1</source>
        <translation>Laufende Schicht, Fahrer %1</translation>
    </message>
    <message>
        <source>X report</source>
        <translation>X-Bericht</translation>
    </message>
</context>
<context>
    <name>SearchPad</name>
    <message>
        <source>Erase the last letter</source>
        <translation>Letzten Buchstaben löschen</translation>
    </message>
</context>
<context>
    <name>SellPage</name>
    <message>
        <source>This feed has nothing to sell.</source>
        <translation>Diese Daten enthalten nichts zu verkaufen.</translation>
    </message>
    <message>
        <source>No ticket has such a word.</source>
        <translation>Kein Fahrschein mit diesem Wort.</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Screen</source>
        <translation>Anzeige</translation>
    </message>
    <message>
        <source>Night colours</source>
        <translation>Nachtfarben</translation>
    </message>
    <message>
        <source>Light text on dark ground, for driving in the dark</source>
        <translation>Helle Schrift auf dunklem Grund, für Fahrten im Dunkeln</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Layout of the tiles</source>
        <translation>Anordnung der Kacheln</translation>
    </message>
    <message>
        <source>Extra diagnostics</source>
        <translation>Zusätzliche Diagnose</translation>
    </message>
    <message>
        <source>Only if the support asks for it</source>
        <translation>Nur auf Anfrage der Betreuung</translation>
    </message>
    <message>
        <source>This terminal</source>
        <translation>Dieses Terminal</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Betreiber</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>English</source>
        <comment>name of the language of these texts</comment>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>Version of terminal and library</source>
        <translation>Version von Terminal und Bibliothek</translation>
    </message>
    <message>
        <source>Sales journal</source>
        <translation>Verkaufsjournal</translation>
    </message>
    <message>
        <source>Puts the tiles in order anew, and writes down how</source>
        <translation>Ordnet die Kacheln neu und schreibt auf, wie</translation>
    </message>
    <message>
        <source>The log is written where logging.conf says, and shown with --verbose.</source>
        <translation>Das Protokoll steht, wo logging.conf es sagt, und erscheint mit --verbose.</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>Töne</translation>
    </message>
    <message>
        <source>For taps, payments and what is refused</source>
        <translation>Beim Tippen, beim Bezahlen und wenn etwas abgelehnt wird</translation>
    </message>
</context>
<context>
    <name>ShiftReport</name>
    <message>
        <source>%1 for %2</source>
        <comment>a count, an amount</comment>
        <translation>%1 für %2</translation>
    </message>
</context>
<context>
    <name>SignInPanel</name>
    <message>
        <source>Locked: %1</source>
        <translation>Gesperrt: %1</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Driver number</source>
        <translation>Fahrernummer</translation>
    </message>
    <message>
        <source>PIN</source>
        <translation>PIN</translation>
    </message>
    <message>
        <source>Other driver</source>
        <translation>Anderer Fahrer</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Entsperren</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>No trip</source>
        <translation>Keine Fahrt</translation>
    </message>
    <message>
        <source>Previous stop</source>
        <translation>Vorige Haltestelle</translation>
    </message>
    <message>
        <source>Next stop</source>
        <translation>Nächste Haltestelle</translation>
    </message>
    <message>
        <source>LOG</source>
        <translation>LOG</translation>
    </message>
    <message numerus="yes">
        <source>%n device fault(s)</source>
        <translation>
            <numerusform>%n Gerätestörung</numerusform>
            <numerusform>%n Gerätestörungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Day colours</source>
        <translation>Tagfarben</translation>
    </message>
    <message>
        <source>Night colours</source>
        <translation>Nachtfarben</translation>
    </message>
    <message>
        <source>Log fare products</source>
        <translation>Fahrscheinprodukte protokollieren</translation>
    </message>
    <message>
        <source>Lock the terminal</source>
        <translation>Terminal sperren</translation>
    </message>
    <message>
        <source>Trip and stop</source>
        <translation>Fahrt und Haltestelle</translation>
    </message>
    <message>
        <source>Next trip</source>
        <translation>Nächste Fahrt</translation>
    </message>
</context>
<context>
    <name>TabStrip</name>
    <message>
        <source>End the search</source>
        <translation>Suche beenden</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Begin of a word</source>
        <translation>Wortanfang</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n ticket(s)</source>
        <translation>
            <numerusform>%1, %n Fahrschein</numerusform>
            <numerusform>%1, %n Fahrscheine</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tile</name>
    <message>
        <source>expired</source>
        <translation>abgelaufen</translation>
    </message>
</context>
<context>
    <name>TripPopup</name>
    <message>
        <source>Trip and stop</source>
        <translation>Fahrt und Haltestelle</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Haltestelle</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1, now</source>
        <translation>%1, jetzt</translation>
    </message>
    <message>
        <source>%1, over</source>
        <translation>%1, vorbei</translation>
    </message>
    <message>
        <source>%1, next trip</source>
        <translation>%1, nächste Fahrt</translation>
    </message>
</context>
<context>
    <name>VehicleLine</name>
    <message>
        <source>this bus</source>
        <translation>dieser Bus</translation>
    </message>
    <message>
        <source>no route</source>
        <translation>keine Linie</translation>
    </message>
</context>
<context>
    <name>ZReportPage</name>
    <message>
        <source>Close shift %1?</source>
        <translation>Schicht %1 abschließen?</translation>
    </message>
    <message>
        <source>Closed shifts</source>
        <translation>Frühere Schichten</translation>
    </message>
    <message>
        <source>No shift has been closed yet.</source>
        <translation>Noch keine Schicht abgeschlossen.</translation>
    </message>
    <message>
        <source>Close shift</source>
        <translation>Abschließen</translation>
    </message>
</context>
<context>
    <name>rivo::drivers::DriverDesk</name>
    <message>
        <source>There are no drivers to sign in.</source>
        <translation>Es gibt keine Fahrer zum Anmelden.</translation>
    </message>
    <message numerus="yes">
        <source>Too many wrong attempts. Wait %n second(s).</source>
        <translation>
            <numerusform>Zu viele Fehlversuche. %n Sekunde warten.</numerusform>
            <numerusform>Zu viele Fehlversuche. %n Sekunden warten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Number or PIN is wrong.</source>
        <translation>Nummer oder PIN ist falsch.</translation>
    </message>
    <message>
        <source>No driver is signed in.</source>
        <translation>Niemand ist angemeldet.</translation>
    </message>
</context>
<context>
    <name>rivo::fleet::FleetSimulator</name>
    <message>
        <source>Bus %1</source>
        <translation>Bus %1</translation>
    </message>
    <message>
        <source>no report</source>
        <translation>keine Meldung</translation>
    </message>
    <message>
        <source>off-line</source>
        <translation>außer Betrieb</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>at a stop</source>
        <translation>an Haltestelle</translation>
    </message>
    <message>
        <source>driving</source>
        <translation>fährt</translation>
    </message>
    <message>
        <source>to %1</source>
        <translation>nach %1</translation>
    </message>
    <message>
        <source>standing</source>
        <translation>steht</translation>
    </message>
</context>
<context>
    <name>rivo::health::Texts</name>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>connected: %1</source>
        <translation>verbunden: %1</translation>
    </message>
    <message>
        <source>cannot be written</source>
        <translation>kann nicht beschrieben werden</translation>
    </message>
    <message>
        <source>%1 MB free</source>
        <translation>%1 MB frei</translation>
    </message>
    <message>
        <source>%1 °C</source>
        <translation>%1 °C</translation>
    </message>
    <message>
        <source>dark</source>
        <translation>dunkel</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>rivo::live::LiveFetcher</name>
    <message>
        <source>the answer takes too long</source>
        <translation>die Antwort dauert zu lange</translation>
    </message>
    <message>
        <source>there is no such file</source>
        <translation>die Datei gibt es nicht</translation>
    </message>
    <message>
        <source>the message is too large</source>
        <translation>die Nachricht ist zu groß</translation>
    </message>
    <message>
        <source>status %1</source>
        <translation>Status %1</translation>
    </message>
    <message>
        <source>the message cannot be unpacked</source>
        <translation>die Nachricht lässt sich nicht entpacken</translation>
    </message>
</context>
<context>
    <name>rivo::live::LiveVehicles</name>
    <message numerus="yes">
        <source>%n vehicle(s)</source>
        <translation>
            <numerusform>%n Fahrzeug</numerusform>
            <numerusform>%n Fahrzeuge</numerusform>
        </translation>
    </message>
    <message>
        <source>no answer yet</source>
        <translation>noch keine Antwort</translation>
    </message>
</context>
<context>
    <name>rivo::live::Texts</name>
    <message>
        <source>to %1</source>
        <translation>nach %1</translation>
    </message>
    <message>
        <source>driving</source>
        <translation>fährt</translation>
    </message>
    <message>
        <source>at a stop</source>
        <translation>an Haltestelle</translation>
    </message>
    <message>
        <source>no report</source>
        <translation>keine Meldung</translation>
    </message>
    <message>
        <source>off-line</source>
        <translation>außer Betrieb</translation>
    </message>
    <message>
        <source>no message of GTFS-Realtime</source>
        <translation>keine Nachricht von GTFS-Realtime</translation>
    </message>
    <message>
        <source>a message with changes only</source>
        <translation>eine Nachricht nur mit Änderungen</translation>
    </message>
</context>
<context>
    <name>rivo::office::OfficeLink</name>
    <message>
        <source>cannot be used: %1</source>
        <translation>kann nicht benutzt werden: %1</translation>
    </message>
    <message>
        <source>takes no records: %1</source>
        <translation>nimmt keine Aufzeichnungen an: %1</translation>
    </message>
    <message>
        <source>records are on their way</source>
        <translation>Aufzeichnungen sind unterwegs</translation>
    </message>
    <message>
        <source>has all records</source>
        <translation>hat alle Aufzeichnungen</translation>
    </message>
    <message>
        <source>no connection, records wait</source>
        <translation>keine Verbindung, Aufzeichnungen warten</translation>
    </message>
</context>
<context>
    <name>rivo::office::PublicationLink</name>
    <message>
        <source>feed</source>
        <translation>Fahrplandaten</translation>
    </message>
    <message>
        <source>drivers</source>
        <translation>Fahrer</translation>
    </message>
    <message>
        <source>limits</source>
        <translation>Grenzen</translation>
    </message>
    <message>
        <source>paid shifts</source>
        <translation>bezahlte Schichten</translation>
    </message>
    <message>
        <source>%1 refused: %2</source>
        <translation>%1 abgelehnt: %2</translation>
    </message>
    <message>
        <source>%1, version %2, refused: %3</source>
        <translation>%1, Version %2, abgelehnt: %3</translation>
    </message>
</context>
<context>
    <name>rivo::office::PublicationStore</name>
    <message>
        <source>cannot be stored: %1</source>
        <translation>nicht zu speichern: %1</translation>
    </message>
    <message>
        <source>is not understood</source>
        <translation>nicht zu verstehen</translation>
    </message>
    <message>
        <source>is not signed by the publisher</source>
        <translation>nicht vom Herausgeber unterschrieben</translation>
    </message>
    <message>
        <source>is older than version %1</source>
        <translation>älter als Version %1</translation>
    </message>
    <message>
        <source>has another content than before</source>
        <translation>anderer Inhalt als vorher</translation>
    </message>
    <message>
        <source>is larger than announced</source>
        <translation>größer als angekündigt</translation>
    </message>
    <message>
        <source>is damaged</source>
        <translation>beschädigt</translation>
    </message>
    <message>
        <source>the terminal did not start with it</source>
        <translation>das Terminal startete damit nicht</translation>
    </message>
</context>
<context>
    <name>rivo::payment::SimulatedPaymentTerminal</name>
    <message>
        <source>Simulated card terminal</source>
        <translation>Simuliertes Kartenterminal</translation>
    </message>
    <message>
        <source>Simulated card</source>
        <translation>Simulierte Karte</translation>
    </message>
    <message>
        <source>The payment was stopped.</source>
        <translation>Die Zahlung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Simulated answer</source>
        <translation>Simulierte Antwort</translation>
    </message>
</context>
<context>
    <name>rivo::payment::ZvtTerminal</name>
    <message>
        <source>No connection to the card terminal</source>
        <translation>Keine Verbindung zum Kartenterminal</translation>
    </message>
    <message>
        <source>The card terminal cannot take %1.</source>
        <translation>Das Kartenterminal nimmt kein %1.</translation>
    </message>
    <message>
        <source>The password of the card terminal is not six digits.</source>
        <translation>Das Kennwort des Kartenterminals hat nicht sechs Ziffern.</translation>
    </message>
    <message>
        <source>The card terminal was not understood.</source>
        <translation>Das Kartenterminal wurde nicht verstanden.</translation>
    </message>
    <message>
        <source>The card terminal did not say what it did.</source>
        <translation>Das Kartenterminal hat kein Ergebnis gemeldet.</translation>
    </message>
    <message>
        <source>The card terminal does not answer.</source>
        <translation>Das Kartenterminal antwortet nicht.</translation>
    </message>
</context>
<context>
    <name>rivo::position::DeviceSource</name>
    <message>
        <source>the device has ended</source>
        <translation>das Gerät hat aufgehört</translation>
    </message>
</context>
<context>
    <name>rivo::position::GpsdSource</name>
    <message>
        <source>no answer</source>
        <translation>keine Antwort</translation>
    </message>
</context>
<context>
    <name>rivo::position::PositionSource</name>
    <message>
        <source>nothing was received</source>
        <translation>nichts wurde empfangen</translation>
    </message>
</context>
<context>
    <name>rivo::position::VehiclePosition</name>
    <message>
        <source>off route</source>
        <translation>abseits der Strecke</translation>
    </message>
    <message>
        <source>%1 min late</source>
        <translation>%1 min zu spät</translation>
    </message>
    <message>
        <source>%1 min ahead</source>
        <translation>%1 min zu früh</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>not connected: %1</source>
        <translation>nicht verbunden: %1</translation>
    </message>
    <message>
        <source>nothing is received</source>
        <translation>nichts wird empfangen</translation>
    </message>
    <message>
        <source>no satellites</source>
        <translation>keine Satelliten</translation>
    </message>
    <message>
        <source>position jumps</source>
        <translation>Position springt</translation>
    </message>
    <message>
        <source>no satellites on the way</source>
        <translation>unterwegs keine Satelliten</translation>
    </message>
    <message>
        <source>position known</source>
        <translation>Position bekannt</translation>
    </message>
</context>
<context>
    <name>rivo::printer::EscPosPrinter</name>
    <message>
        <source>Not connected: %1</source>
        <translation>Nicht verbunden: %1</translation>
    </message>
    <message>
        <source>Being connected</source>
        <translation>Wird verbunden</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Does not answer</source>
        <translation>Antwortet nicht</translation>
    </message>
    <message>
        <source>Little paper left</source>
        <translation>Wenig Papier</translation>
    </message>
    <message>
        <source>Out of paper</source>
        <translation>Papier leer</translation>
    </message>
    <message>
        <source>Cover open</source>
        <translation>Klappe offen</translation>
    </message>
    <message>
        <source>The cutter is jammed</source>
        <translation>Das Messer klemmt</translation>
    </message>
    <message>
        <source>Defective: switch it off and on</source>
        <translation>Defekt: aus- und einschalten</translation>
    </message>
    <message>
        <source>Too hot: it goes on by itself</source>
        <translation>Zu heiß: druckt von selbst weiter</translation>
    </message>
    <message>
        <source>Paper is being fed</source>
        <translation>Papier wird vorgeschoben</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Off-line</source>
        <translation>Offline</translation>
    </message>
</context>
<context>
    <name>rivo::sales::CardDesk</name>
    <message>
        <source>No card terminal is connected.</source>
        <translation>Es ist kein Kartenterminal verbunden.</translation>
    </message>
    <message>
        <source>The last card payment is not cleared yet.</source>
        <translation>Die letzte Kartenzahlung ist noch nicht geklärt.</translation>
    </message>
    <message>
        <source>The card terminal is busy.</source>
        <translation>Das Kartenterminal ist beschäftigt.</translation>
    </message>
    <message>
        <source>Asking the card terminal whether it was paid</source>
        <translation>Rückfrage beim Kartenterminal, ob bezahlt wurde</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Wird abgebrochen</translation>
    </message>
    <message>
        <source>Asking the card terminal</source>
        <translation>Anfrage beim Kartenterminal</translation>
    </message>
    <message>
        <source>The card terminal does not answer.</source>
        <translation>Das Kartenterminal antwortet nicht.</translation>
    </message>
    <message>
        <source>The card terminal did not do it.</source>
        <translation>Das Kartenterminal hat es nicht ausgeführt.</translation>
    </message>
</context>
<context>
    <name>rivo::sales::NoPrinter</name>
    <message>
        <source>No ticket printer is set up</source>
        <translation>Kein Fahrkartendrucker eingerichtet</translation>
    </message>
</context>
<context>
    <name>rivo::sales::SalesDesk</name>
    <message>
        <source>The sales journal is in use by another program. Nothing can be sold.</source>
        <translation>Das Verkaufsjournal wird von einem anderen Programm benutzt. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>There is no space left for the sales journal. Nothing can be sold.</source>
        <translation>Für das Verkaufsjournal ist kein Platz mehr. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>The sales journal is damaged. Nothing can be sold.</source>
        <translation>Das Verkaufsjournal ist beschädigt. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>The file given as sales journal is not one of this terminal. Nothing can be sold.</source>
        <translation>Die angegebene Datei ist kein Verkaufsjournal dieses Terminals. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>The sales journal cannot be written. Nothing can be sold.</source>
        <translation>Das Verkaufsjournal lässt sich nicht beschreiben. Kein Verkauf möglich.</translation>
    </message>
    <message>
        <source>The ticket printer cannot print: %1</source>
        <translation>Der Fahrkartendrucker kann nicht drucken: %1</translation>
    </message>
    <message>
        <source>Tickets are being printed.</source>
        <translation>Fahrkarten werden gedruckt.</translation>
    </message>
    <message>
        <source>This tile is not for sale.</source>
        <translation>Diese Kachel ist nicht verkäuflich.</translation>
    </message>
    <message>
        <source>This tile has no valid price.</source>
        <translation>Diese Kachel hat keinen gültigen Preis.</translation>
    </message>
    <message>
        <source>The basket is full.</source>
        <translation>Der Warenkorb ist voll.</translation>
    </message>
    <message>
        <source>There is no such line.</source>
        <translation>Diese Zeile gibt es nicht.</translation>
    </message>
    <message>
        <source>The basket is empty.</source>
        <translation>Der Warenkorb ist leer.</translation>
    </message>
    <message>
        <source>There is no such way of payment.</source>
        <translation>Diese Zahlungsart gibt es nicht.</translation>
    </message>
    <message>
        <source>There are unpaid tickets in the basket.</source>
        <translation>Im Warenkorb sind unbezahlte Fahrkarten.</translation>
    </message>
    <message>
        <source>The sales journal was kept by another version of this terminal. Nothing can be sold.</source>
        <translation>Das Verkaufsjournal stammt von einer anderen Version dieses Terminals. Es kann nichts verkauft werden.</translation>
    </message>
    <message>
        <source>The sales journal is kept in another currency. Nothing can be sold.</source>
        <translation>Das Verkaufsjournal wird in einer anderen Währung geführt. Es kann nichts verkauft werden.</translation>
    </message>
    <message>
        <source>The last sale was interrupted: say first which tickets are out.</source>
        <translation>Der letzte Verkauf wurde unterbrochen: erst angeben, welche Fahrkarten gedruckt sind.</translation>
    </message>
    <message>
        <source>There is no ticket in doubt.</source>
        <translation>Es gibt keine ungeklärte Fahrkarte.</translation>
    </message>
    <message>
        <source>There is no cash of this shift to hand over.</source>
        <translation>Von dieser Schicht ist kein Bargeld abzugeben.</translation>
    </message>
    <message>
        <source>Sign in first.</source>
        <translation>Zuerst anmelden.</translation>
    </message>
    <message>
        <source>This is less than what is due.</source>
        <translation>Das ist weniger als der fällige Betrag.</translation>
    </message>
    <message>
        <source>This shift has no such ticket.</source>
        <translation>Diese Schicht hat keine solche Fahrkarte.</translation>
    </message>
    <message>
        <source>This ticket was taken back.</source>
        <translation>Diese Fahrkarte wurde zurückgenommen.</translation>
    </message>
    <message>
        <source>There is no such report.</source>
        <translation>Diesen Bericht gibt es nicht.</translation>
    </message>
    <message>
        <source>This was not printed: %1</source>
        <translation>Das wurde nicht gedruckt: %1</translation>
    </message>
    <message>
        <source>Nothing was sold in this shift.</source>
        <translation>In dieser Schicht wurde nichts verkauft.</translation>
    </message>
    <message>
        <source>The last sale was taken back already.</source>
        <translation>Der letzte Verkauf wurde schon zurückgenommen.</translation>
    </message>
    <message numerus="yes">
        <source>The last sale is older than %n minute(s): it can be refunded.</source>
        <translation>
            <numerusform>Der letzte Verkauf ist älter als %n Minute: Er kann erstattet werden.</numerusform>
            <numerusform>Der letzte Verkauf ist älter als %n Minuten: Er kann erstattet werden.</numerusform>
        </translation>
    </message>
    <message>
        <source>This shift has no such sale.</source>
        <translation>Diese Schicht hat keinen solchen Verkauf.</translation>
    </message>
    <message>
        <source>This was taken back already.</source>
        <translation>Das wurde schon zurückgenommen.</translation>
    </message>
    <message>
        <source>A refund needs a reason.</source>
        <translation>Eine Erstattung braucht einen Grund.</translation>
    </message>
    <message>
        <source>This is no amount.</source>
        <translation>Das ist kein Betrag.</translation>
    </message>
    <message>
        <source>The float of this shift cannot be changed any more.</source>
        <translation>Das Wechselgeld dieser Schicht kann nicht mehr geändert werden.</translation>
    </message>
    <message>
        <source>Look whether this was printed.</source>
        <translation>Nachsehen, ob das gedruckt wurde.</translation>
    </message>
    <message>
        <source>The card payment is not finished.</source>
        <translation>Die Kartenzahlung ist nicht abgeschlossen.</translation>
    </message>
    <message>
        <source>%1 is not valid any more.</source>
        <translation>%1 gilt nicht mehr.</translation>
    </message>
    <message numerus="yes">
        <source>The basket has no room for %n more ticket(s).</source>
        <translation>
            <numerusform>Für %n weiteren Fahrschein ist kein Platz im Warenkorb.</numerusform>
            <numerusform>Für %n weitere Fahrscheine ist kein Platz im Warenkorb.</numerusform>
        </translation>
    </message>
    <message>
        <source>At least one ticket is needed.</source>
        <translation>Mindestens ein Fahrschein ist nötig.</translation>
    </message>
    <message>
        <source>%1 is not sold here now.</source>
        <translation>%1 wird hier derzeit nicht verkauft.</translation>
    </message>
    <message>
        <source>There is no last sale.</source>
        <translation>Es gibt keinen letzten Verkauf.</translation>
    </message>
    <message>
        <source>A card payment without tickets was given back.</source>
        <translation>Eine Kartenzahlung ohne Fahrscheine wurde erstattet.</translation>
    </message>
    <message>
        <source>A card payment without tickets could not be given back: %1</source>
        <translation>Eine Kartenzahlung ohne Fahrscheine konnte nicht erstattet werden: %1</translation>
    </message>
    <message>
        <source>Shift %1: the card terminal&apos;s total differs by %2.</source>
        <translation>Schicht %1: Die Summe des Kartenterminals weicht um %2 ab.</translation>
    </message>
    <message>
        <source>A file of the sales journal is missing or was replaced. Nothing can be sold.</source>
        <translation>Eine Datei des Verkaufsjournals fehlt oder wurde ersetzt. Es kann nichts verkauft werden.</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::CardDevice</name>
    <message>
        <source>Card terminal</source>
        <translation>Kartenterminal</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::CatalogueDesk</name>
    <message>
        <source>Adult</source>
        <translation>Erwachsene</translation>
    </message>
    <message>
        <source>Student</source>
        <translation>Studierende</translation>
    </message>
    <message>
        <source>School pupil</source>
        <translation>Schulkinder</translation>
    </message>
    <message>
        <source>Passenger with a disability</source>
        <translation>Menschen mit Behinderung</translation>
    </message>
    <message>
        <source>Military</source>
        <translation>Militär</translation>
    </message>
    <message>
        <source>Large family</source>
        <translation>Großfamilien</translation>
    </message>
    <message>
        <source>Student (second group)</source>
        <translation>Studierende (zweite Gruppe)</translation>
    </message>
    <message>
        <source>Military (second group)</source>
        <translation>Militär (zweite Gruppe)</translation>
    </message>
    <message>
        <source>Anyone</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::DeviceDesk</name>
    <message>
        <source>Ticket printer</source>
        <translation>Fahrkartendrucker</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>The ticket printer is not connected.</source>
        <translation>Der Fahrkartendrucker ist nicht verbunden.</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::OfferDesk</name>
    <message>
        <source>The feed does not say what is sold here: %1</source>
        <translation>In den Tarifdaten steht nicht, was hier verkauft wird: %1</translation>
    </message>
    <message>
        <source>Nothing is sold at this stop now.</source>
        <translation>An dieser Haltestelle wird jetzt nichts verkauft.</translation>
    </message>
    <message>
        <source>not on this route</source>
        <translation>nicht auf dieser Linie</translation>
    </message>
    <message>
        <source>not from this stop</source>
        <translation>nicht ab dieser Haltestelle</translation>
    </message>
    <message>
        <source>not at this time</source>
        <translation>nicht zu dieser Zeit</translation>
    </message>
    <message>
        <source>sold before boarding only</source>
        <translation>nur im Vorverkauf</translation>
    </message>
    <message>
        <source>not sold on paper</source>
        <translation>nicht auf Papier</translation>
    </message>
    <message>
        <source>another fare applies</source>
        <translation>ein anderer Tarif gilt</translation>
    </message>
    <message>
        <source>no ticket</source>
        <translation>ohne Fahrschein</translation>
    </message>
    <message>
        <source>paper</source>
        <translation>Papier</translation>
    </message>
    <message>
        <source>transit card</source>
        <translation>Chipkarte</translation>
    </message>
    <message>
        <source>bank card</source>
        <translation>Bankkarte</translation>
    </message>
    <message>
        <source>mobile app</source>
        <translation>App</translation>
    </message>
    <message>
        <source>no. %1</source>
        <translation>Nr. %1</translation>
    </message>
    <message>
        <source>route %1</source>
        <translation>Linie %1</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::Presentation</name>
    <message>
        <source>%1 −%2%</source>
        <comment>passenger, discount</comment>
        <translation>%1 −%2%</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::TakeOver</name>
    <message>
        <source>its currency is %1</source>
        <translation>andere Währung: %1</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::Terminal</name>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>This vehicle</source>
        <translation>Dieses Fahrzeug</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::TicketDetails</name>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>Includes %1% VAT: %2</source>
        <translation>Enthält %1 % MwSt.: %2</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::TileDesk</name>
    <message>
        <source>Often</source>
        <translation>Häufig</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Anywhere</source>
        <translation>Überall</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Derzeit nicht</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::TripDesk</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 nach %2</translation>
    </message>
</context>
<context>
    <name>rivo::terminal::VehicleParts</name>
    <message>
        <source>starting</source>
        <translation>beginnt</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>not compared with satellites yet</source>
        <translation>noch nicht mit Satelliten verglichen</translation>
    </message>
    <message>
        <source>%1 s ahead of the satellites</source>
        <translation>%1 s vor den Satelliten</translation>
    </message>
    <message>
        <source>%1 s behind the satellites</source>
        <translation>%1 s hinter den Satelliten</translation>
    </message>
    <message>
        <source>Other vehicles</source>
        <translation>Andere Fahrzeuge</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Space for the journal</source>
        <translation>Platz für das Journal</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>Office</source>
        <translation>Zentrale</translation>
    </message>
</context>
<context>
    <name>rivo::ticket::Paper</name>
    <message>
        <source>COPY %1</source>
        <translation>KOPIE %1</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Hin und zurück</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Nach</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Valid</source>
        <translation>Gültig</translation>
    </message>
    <message>
        <source>on %1</source>
        <translation>am %1</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Preis</translation>
    </message>
    <message>
        <source>Paid</source>
        <translation>Bezahlt</translation>
    </message>
    <message>
        <source>by card</source>
        <translation>mit Karte</translation>
    </message>
    <message>
        <source>in cash</source>
        <translation>bar</translation>
    </message>
    <message>
        <source>Ticket</source>
        <translation>Fahrkarte</translation>
    </message>
    <message>
        <source>Sold</source>
        <translation>Verkauft</translation>
    </message>
    <message>
        <source>Driver</source>
        <translation>Fahrer</translation>
    </message>
    <message>
        <source>Vehicle</source>
        <translation>Fahrzeug</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Prüfwert</translation>
    </message>
    <message>
        <source>Z report %1</source>
        <translation>Z-Bericht %1</translation>
    </message>
    <message>
        <source>X report %1</source>
        <translation>X-Bericht %1</translation>
    </message>
    <message>
        <source>The shift is running</source>
        <translation>Die Schicht läuft</translation>
    </message>
    <message>
        <source>Closed</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>First ticket</source>
        <translation>Erste Fahrkarte</translation>
    </message>
    <message>
        <source>Last ticket</source>
        <translation>Letzte Fahrkarte</translation>
    </message>
    <message>
        <source>Tickets</source>
        <translation>Fahrkarten</translation>
    </message>
    <message>
        <source>Tickets sold for</source>
        <translation>Fahrkarten verkauft für</translation>
    </message>
    <message>
        <source>Void</source>
        <translation>Storniert</translation>
    </message>
    <message>
        <source>Refunded</source>
        <translation>Erstattet</translation>
    </message>
    <message>
        <source>Rounding of cash</source>
        <translation>Rundung des Bargelds</translation>
    </message>
    <message>
        <source>Takings</source>
        <translation>Einnahmen</translation>
    </message>
    <message>
        <source>By card</source>
        <translation>Mit Karte</translation>
    </message>
    <message>
        <source>In cash</source>
        <translation>Bar</translation>
    </message>
    <message>
        <source>Opening float</source>
        <translation>Wechselgeld zu Beginn</translation>
    </message>
    <message>
        <source>Cash to hand over</source>
        <translation>Abzugebendes Bargeld</translation>
    </message>
    <message>
        <source>Copies printed</source>
        <translation>Gedruckte Kopien</translation>
    </message>
    <message>
        <source>Handed over</source>
        <translation>Abgegeben</translation>
    </message>
    <message>
        <source>Counted</source>
        <translation>Gezählt</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Differenz</translation>
    </message>
    <message>
        <source>Day of the card terminal</source>
        <translation>Tag des Kartenterminals</translation>
    </message>
    <message>
        <source>Difference to the journal</source>
        <translation>Differenz zum Journal</translation>
    </message>
    <message>
        <source>Journal</source>
        <translation>Journal</translation>
    </message>
</context>
</TS>
