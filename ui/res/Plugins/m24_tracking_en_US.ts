<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ControlTrackingPlugin</name>
    <message>
        <source>update</source>
        <translation>Update</translation>
    </message>
</context>
<context>
    <name>root</name>
    <message>
        <source>title</source>
        <translation>AI Tracking</translation>
    </message>
    <message>
        <source>tracking_type</source>
        <translation>Tracking Type</translation>
    </message>
    <message>
        <source>normal</source>
        <translation>Basic</translation>
    </message>
    <message>
        <source>hand</source>
        <translation>Hand</translation>
    </message>
    <message>
        <source>whiteboard</source>
        <translation>Board</translation>
    </message>
    <message>
        <source>tracking_mode</source>
        <translation>Tracking Mode</translation>
    </message>
    <message>
        <source>normal_mode</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>sport</source>
        <translation>Sport</translation>
    </message>
    <message>
        <source>picture_mode</source>
        <translation>Auto Composition</translation>
    </message>
    <message>
        <source>half_body</source>
        <translation>Half Body</translation>
    </message>
    <message>
        <source>full_body</source>
        <translation>Full Body</translation>
    </message>
    <message>
        <source>multi_body</source>
        <translation>Bodies</translation>
    </message>
    <message>
        <source>areaLimit</source>
        <translation>Area Tracking</translation>
    </message>
    <message>
        <source>unLimitArea</source>
        <translation>Non-tracking Area</translation>
    </message>
</context>
</TS>
