<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>root</name>
    <message>
        <source>title</source>
        <translation>退路</translation>
    </message>
</context>
</TS>
