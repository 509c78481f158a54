<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>host</name>
    <message>
        <source>IDS_MULTIPAGE_PLAY</source>
        <translation>播放</translation>
    </message>
    <message>
        <source>IDS_ANIMATEDIMAGE_SHIFT_INTERVAL</source>
        <translation>帧间隔（毫秒）</translation>
    </message>
    <message>
        <source>IDS_ANIMATEDIMAGE_IF_LOOP</source>
        <translation>循环播放</translation>
    </message>
    <message>
        <source>IDS_KT_PORTRAIT_REPLACE</source>
        <translation>替换造型</translation>
    </message>
    <message>
        <source>IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE</source>
        <translation>更改动画类型</translation>
    </message>
    <message>
        <source>IDS_PAGE_MOVE_TO_LAYER</source>
        <translation>移动到其他图层</translation>
    </message>
</context>
</TS>
