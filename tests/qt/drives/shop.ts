<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Shop</name>
    <message><source>Mug</source><translation type="unfinished"></translation></message>
    <message><source>Bowl</source><translation type="unfinished"></translation></message>
    <message><source>Vase</source><translation>Vase</translation></message>
</context>
<context>
    <name>Checkout</name>
    <message><source>Card number</source><translation type="unfinished"></translation></message>
</context>
</TS>
