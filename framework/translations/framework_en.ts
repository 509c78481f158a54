<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>host</name>
    <message>
        <source>IDS_MULTIPAGE_PLAY</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>IDS_ANIMATEDIMAGE_SHIFT_INTERVAL</source>
        <translation>Frame interval (ms)</translation>
    </message>
    <message>
        <source>IDS_ANIMATEDIMAGE_IF_LOOP</source>
        <translation>Loop forever</translation>
    </message>
    <message>
        <source>IDS_KT_PORTRAIT_REPLACE</source>
        <translation>Replace Portrait</translation>
    </message>
    <message>
        <source>IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE</source>
        <translation>Change Animation Type</translation>
    </message>
    <message>
        <source>IDS_PAGE_MOVE_TO_LAYER</source>
        <translation>Move to Another Layer</translation>
    </message>
</context>
</TS>
