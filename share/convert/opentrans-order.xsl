<?xml version="1.0" encoding="UTF-8"?>
<!-- An ORDER of openTRANS 2.1 as a file of jobs. docs/convert.md says what becomes of what. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:ot="http://www.opentrans.org/XMLSchema/2.1" xmlns:bmecat="http://www.bmecat.org/bmecat/2005">
  <xsl:import href="json.xsl"/>
  <xsl:output method="text" encoding="UTF-8"/>

  <!-- What the number of an order gets in front of it to be the key of a job. -->
  <xsl:param name="prefix" select="'OT-'"/>

  <xsl:template match="/">
    <xsl:if test="not(ot:ORDER)">
      <xsl:message terminate="yes">
        <xsl:value-of select="concat('an ORDER of openTRANS 2.1 is expected, not ', name(*), ' of ', namespace-uri(*))"/>
      </xsl:message>
    </xsl:if>
    <xsl:text>[</xsl:text>
    <xsl:apply-templates select="ot:ORDER"/>
    <xsl:text>]&#10;</xsl:text>
  </xsl:template>

  <xsl:template match="ot:ORDER">
    <xsl:variable name="info" select="ot:ORDER_HEADER/ot:ORDER_INFO"/>
    <xsl:variable name="parties" select="$info/ot:PARTIES/ot:PARTY"/>
    <xsl:variable name="buyer" select="$parties[ot:PARTY_ROLE = 'buyer'][1]"/>
    <xsl:variable name="place" select="$parties[ot:PARTY_ROLE = 'delivery'][1]/ot:ADDRESS[1]"/>
    <xsl:variable name="customer" select="$buyer/bmecat:PARTY_ID[@type = 'supplier_specific'][1]"/>
    <xsl:call-template name="require">
      <xsl:with-param name="what" select="'ORDER_ID'"/>
      <xsl:with-param name="value" select="$info/ot:ORDER_ID"/>
    </xsl:call-template>
    <xsl:call-template name="require">
      <xsl:with-param name="what" select="'the number of the customer (PARTY_ID of type supplier_specific of the buyer)'"/>
      <xsl:with-param name="value" select="$customer"/>
    </xsl:call-template>
    <xsl:text>{"type":"Auftrag"</xsl:text>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'JobID'"/>
      <xsl:with-param name="value" select="concat($prefix, $info/ot:ORDER_ID)"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'Kundennummer'"/>
      <xsl:with-param name="value" select="$customer"/>
    </xsl:call-template>
    <xsl:call-template name="date">
      <xsl:with-param name="name" select="'Eingangsdatum'"/>
      <xsl:with-param name="value" select="$info/ot:ORDER_DATE"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'Betreff'"/>
      <xsl:with-param name="value" select="concat('Bestellung ', $info/ot:ORDER_ID)"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'WährungEingabe'"/>
      <xsl:with-param name="value" select="$info/bmecat:CURRENCY"/>
    </xsl:call-template>
    <xsl:call-template name="date">
      <xsl:with-param name="name" select="'Liefertermin'"/>
      <xsl:with-param name="value" select="$info/ot:DELIVERY_DATE/ot:DELIVERY_START_DATE"/>
    </xsl:call-template>
    <xsl:call-template name="lines">
      <xsl:with-param name="name" select="'Bemerkung'"/>
      <xsl:with-param name="value" select="$info/ot:REMARKS"/>
    </xsl:call-template>
    <xsl:if test="$place">
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Bez1'"/>
        <xsl:with-param name="value" select="$place/bmecat:NAME"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Bez2'"/>
        <xsl:with-param name="value" select="$place/bmecat:NAME2"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Strasse'"/>
        <xsl:with-param name="value" select="$place/bmecat:STREET"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Land'"/>
        <xsl:with-param name="value" select="$place/bmecat:COUNTRY_CODED"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_PLZ'"/>
        <xsl:with-param name="value" select="$place/bmecat:ZIP"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Ort'"/>
        <xsl:with-param name="value" select="$place/bmecat:CITY"/>
      </xsl:call-template>
    </xsl:if>
    <xsl:if test="not(ot:ORDER_ITEM_LIST/ot:ORDER_ITEM)">
      <xsl:message terminate="yes">the order has no ORDER_ITEM</xsl:message>
    </xsl:if>
    <xsl:text>,"Positionen":[</xsl:text>
    <xsl:for-each select="ot:ORDER_ITEM_LIST/ot:ORDER_ITEM">
      <xsl:variable name="article" select="ot:PRODUCT_ID/bmecat:SUPPLIER_PID"/>
      <xsl:call-template name="require">
        <xsl:with-param name="what" select="concat('item ', ot:LINE_ITEM_ID, ': SUPPLIER_PID')"/>
        <xsl:with-param name="value" select="$article"/>
      </xsl:call-template>
      <xsl:call-template name="require">
        <xsl:with-param name="what" select="concat('item ', ot:LINE_ITEM_ID, ': QUANTITY')"/>
        <xsl:with-param name="value" select="ot:QUANTITY"/>
      </xsl:call-template>
      <xsl:if test="position() &gt; 1">,</xsl:if>
      <xsl:value-of select="concat('{&quot;Positionsnummer&quot;:', position())"/>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'Artikelnummer'"/>
        <xsl:with-param name="value" select="$article"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Menge'"/>
        <xsl:with-param name="value" select="ot:QUANTITY"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Preis'"/>
        <xsl:with-param name="value" select="ot:PRODUCT_PRICE_FIX/bmecat:PRICE_AMOUNT"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Preiseinheit'"/>
        <xsl:with-param name="value" select="ot:PRODUCT_PRICE_FIX/bmecat:PRICE_QUANTITY"/>
      </xsl:call-template>
      <xsl:call-template name="date">
        <xsl:with-param name="name" select="'Liefertermin'"/>
        <xsl:with-param name="value" select="ot:DELIVERY_DATE/ot:DELIVERY_START_DATE"/>
      </xsl:call-template>
      <xsl:call-template name="lines">
        <xsl:with-param name="name" select="'Artikellangtext'"/>
        <xsl:with-param name="value" select="ot:REMARKS"/>
      </xsl:call-template>
      <xsl:text>}</xsl:text>
    </xsl:for-each>
    <xsl:text>]}</xsl:text>
  </xsl:template>
</xsl:stylesheet>
