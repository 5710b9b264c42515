<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>LightCheck_dlg</name>
    <message numerus="yes">
        <source>Following the touch frame: %Ln scan(s) of each axis so far.</source>
        <translation>
            <numerusform>Following the touch frame: %Ln scan of each axis so far.</numerusform>
            <numerusform>Following the touch frame: %Ln scans of each axis so far.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RecordAction</name>
    <message numerus="yes">
        <source>Recording into %1, where %Ln packet(s) are missing.</source>
        <translation>
            <numerusform>Recording into %1, where %Ln packet is missing.</numerusform>
            <numerusform>Recording into %1, where %Ln packets are missing.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TryOut_dlg</name>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the left in %L1 ms</source>
        <translation>
            <numerusform>Wheel: %Ln step to the left in %L1 ms</numerusform>
            <numerusform>Wheel: %Ln steps to the left in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) to the right in %L1 ms</source>
        <translation>
            <numerusform>Wheel: %Ln step to the right in %L1 ms</numerusform>
            <numerusform>Wheel: %Ln steps to the right in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) up in %L1 ms</source>
        <translation>
            <numerusform>Wheel: %Ln step up in %L1 ms</numerusform>
            <numerusform>Wheel: %Ln steps up in %L1 ms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Wheel: %Ln step(s) down in %L1 ms</source>
        <translation>
            <numerusform>Wheel: %Ln step down in %L1 ms</numerusform>
            <numerusform>Wheel: %Ln steps down in %L1 ms</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>bundle::Contents</name>
    <message numerus="yes">
        <source>    (%n more time(s))</source>
        <translation>
            <numerusform>    (%n more time)</numerusform>
            <numerusform>    (%n more times)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>doctor::UsbChecks</name>
    <message numerus="yes">
        <source>There are %n touch frames on USB; %1 is the first.</source>
        <translation>
            <numerusform>There is %n touch frame on USB, at %1.</numerusform>
            <numerusform>There are %n touch frames on USB; %1 is the first.</numerusform>
        </translation>
    </message>
</context>
</TS>
