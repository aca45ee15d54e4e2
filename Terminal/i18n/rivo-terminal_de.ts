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
        <source>Paid, but the terminal stopped while printing. Is ticket %1 out?</source>
        <translation>Bezahlt, dann beim Drucken ausgefallen. Ist Fahrkarte %1 gedruckt?</translation>
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
    <name>SellPage</name>
    <message>
        <source>This feed has nothing to sell.</source>
        <translation>Diese Daten enthalten nichts zu verkaufen.</translation>
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
</context>
<context>
    <name>Tile</name>
    <message>
        <source>Zone %1</source>
        <translation>Zone %1</translation>
    </message>
    <message>
        <source>expired</source>
        <translation>abgelaufen</translation>
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
</context>
<context>
    <name>rivo::terminal::Terminal</name>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
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
    <name>rivo::terminal::TripDesk</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 nach %2</translation>
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
</context>
</TS>
