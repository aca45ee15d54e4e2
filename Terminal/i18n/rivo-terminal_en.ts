<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>BasketPanel</name>
    <message numerus="yes">
        <source>%n ticket(s)</source>
        <translation>
            <numerusform>%n ticket</numerusform>
            <numerusform>%n tickets</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Print %n ticket(s)?</source>
        <translation>
            <numerusform>Print %n ticket?</numerusform>
            <numerusform>Print %n tickets?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PastTicketLine</name>
    <message numerus="yes">
        <source>%n copy(ies)</source>
        <translation>
            <numerusform>%n copy</numerusform>
            <numerusform>%n copies</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QuantityPad</name>
    <message numerus="yes">
        <source>Add %n</source>
        <comment>tickets</comment>
        <translation>
            <numerusform>Add %n</numerusform>
            <numerusform>Add %n</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RefundPopup</name>
    <message numerus="yes">
        <source>Refund %n ticket(s)?</source>
        <translation>
            <numerusform>Refund %n ticket?</numerusform>
            <numerusform>Refund %n tickets?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>All %n ticket(s)</source>
        <translation>
            <numerusform>All %n ticket</numerusform>
            <numerusform>All %n tickets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RunningShift</name>
    <message numerus="yes">
        <source>%n ticket(s) for %1, of it %2 in cash. Shift %3 starts at once; a closed shift cannot be opened again.</source>
        <translation>
            <numerusform>%n ticket for %1, of it %2 in cash. Shift %3 starts at once; a closed shift cannot be opened again.</numerusform>
            <numerusform>%n tickets for %1, of it %2 in cash. Shift %3 starts at once; a closed shift cannot be opened again.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message numerus="yes">
        <source>%n device fault(s)</source>
        <translation>
            <numerusform>%n device fault</numerusform>
            <numerusform>%n device faults</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TabStrip</name>
    <message numerus="yes">
        <source>%1, %n ticket(s)</source>
        <translation>
            <numerusform>%1, %n ticket</numerusform>
            <numerusform>%1, %n tickets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>rivo::drivers::DriverDesk</name>
    <message numerus="yes">
        <source>Too many wrong attempts. Wait %n second(s).</source>
        <translation>
            <numerusform>Too many wrong attempts. Wait %n second.</numerusform>
            <numerusform>Too many wrong attempts. Wait %n seconds.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>rivo::live::LiveVehicles</name>
    <message numerus="yes">
        <source>%n vehicle(s)</source>
        <translation>
            <numerusform>%n vehicle</numerusform>
            <numerusform>%n vehicles</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>rivo::sales::SalesDesk</name>
    <message numerus="yes">
        <source>The last sale is older than %n minute(s): it can be refunded.</source>
        <translation>
            <numerusform>The last sale is older than %n minute: it can be refunded.</numerusform>
            <numerusform>The last sale is older than %n minutes: it can be refunded.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The basket has no room for %n more ticket(s).</source>
        <translation>
            <numerusform>The basket has no room for %n more ticket.</numerusform>
            <numerusform>The basket has no room for %n more tickets.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>rivo::terminal::TicketDetails</name>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
</context>
</TS>
