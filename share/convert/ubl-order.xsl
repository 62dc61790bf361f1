<?xml version="1.0" encoding="UTF-8"?>
<!-- An order of UBL 2.1, as of Peppol BIS Ordering, as a file of jobs. docs/convert.md says what becomes of what. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:o="urn:oasis:names:specification:ubl:schema:xsd:Order-2"
    xmlns:cac="urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"
    xmlns:cbc="urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2">
  <xsl:import href="json.xsl"/>
  <xsl:output method="text" encoding="UTF-8"/>

  <!-- What the number of an order gets in front of it to be the key of a job. -->
  <xsl:param name="prefix" select="'UBL-'"/>

  <xsl:template match="/">
    <xsl:if test="not(o:Order)">
      <xsl:message terminate="yes">
        <xsl:value-of select="concat('an Order of UBL 2.1 is expected, not ', name(*), ' of ', namespace-uri(*))"/>
      </xsl:message>
    </xsl:if>
    <xsl:text>[</xsl:text>
    <xsl:apply-templates select="o:Order"/>
    <xsl:text>]&#10;</xsl:text>
  </xsl:template>

  <xsl:template match="o:Order">
    <xsl:variable name="buyer" select="cac:BuyerCustomerParty"/>
    <xsl:variable name="customer" select="concat($buyer/cbc:SupplierAssignedAccountID,
        substring($buyer/cac:Party/cac:PartyIdentification[1]/cbc:ID, 1,
                  string-length($buyer/cac:Party/cac:PartyIdentification[1]/cbc:ID)
                  * not($buyer/cbc:SupplierAssignedAccountID)))"/>
    <xsl:variable name="place" select="cac:Delivery/cac:DeliveryLocation/cac:Address"/>
    <xsl:call-template name="require">
      <xsl:with-param name="what" select="'cbc:ID of the order'"/>
      <xsl:with-param name="value" select="cbc:ID"/>
    </xsl:call-template>
    <xsl:call-template name="require">
      <xsl:with-param name="what"
          select="'the number of the customer (cbc:SupplierAssignedAccountID or cac:PartyIdentification of the buyer)'"/>
      <xsl:with-param name="value" select="$customer"/>
    </xsl:call-template>
    <xsl:text>{"type":"Auftrag"</xsl:text>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'JobID'"/>
      <xsl:with-param name="value" select="concat($prefix, cbc:ID)"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'Kundennummer'"/>
      <xsl:with-param name="value" select="$customer"/>
    </xsl:call-template>
    <xsl:call-template name="date">
      <xsl:with-param name="name" select="'Eingangsdatum'"/>
      <xsl:with-param name="value" select="cbc:IssueDate"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'Betreff'"/>
      <xsl:with-param name="value" select="concat('Bestellung ', cbc:ID)"/>
    </xsl:call-template>
    <xsl:call-template name="text">
      <xsl:with-param name="name" select="'WährungEingabe'"/>
      <xsl:with-param name="value" select="cbc:DocumentCurrencyCode"/>
    </xsl:call-template>
    <xsl:call-template name="date">
      <xsl:with-param name="name" select="'Liefertermin'"/>
      <xsl:with-param name="value" select="cac:Delivery/cac:RequestedDeliveryPeriod/cbc:StartDate"/>
    </xsl:call-template>
    <xsl:call-template name="lines">
      <xsl:with-param name="name" select="'Bemerkung'"/>
      <xsl:with-param name="value" select="cbc:Note"/>
    </xsl:call-template>
    <xsl:if test="$place">
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Bez1'"/>
        <xsl:with-param name="value" select="cac:Delivery/cac:DeliveryParty/cac:PartyName/cbc:Name"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Strasse'"/>
        <xsl:with-param name="value" select="$place/cbc:StreetName"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Land'"/>
        <xsl:with-param name="value" select="$place/cac:Country/cbc:IdentificationCode"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_PLZ'"/>
        <xsl:with-param name="value" select="$place/cbc:PostalZone"/>
      </xsl:call-template>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'VS_Ort'"/>
        <xsl:with-param name="value" select="$place/cbc:CityName"/>
      </xsl:call-template>
    </xsl:if>
    <xsl:if test="not(cac:OrderLine)">
      <xsl:message terminate="yes">the order has no cac:OrderLine</xsl:message>
    </xsl:if>
    <xsl:text>,"Positionen":[</xsl:text>
    <xsl:for-each select="cac:OrderLine/cac:LineItem">
      <xsl:variable name="article" select="cac:Item/cac:SellersItemIdentification/cbc:ID"/>
      <xsl:call-template name="require">
        <xsl:with-param name="what" select="concat('line ', cbc:ID, ': cac:SellersItemIdentification')"/>
        <xsl:with-param name="value" select="$article"/>
      </xsl:call-template>
      <xsl:call-template name="require">
        <xsl:with-param name="what" select="concat('line ', cbc:ID, ': cbc:Quantity')"/>
        <xsl:with-param name="value" select="cbc:Quantity"/>
      </xsl:call-template>
      <xsl:if test="position() &gt; 1">,</xsl:if>
      <xsl:value-of select="concat('{&quot;Positionsnummer&quot;:', position())"/>
      <xsl:call-template name="text">
        <xsl:with-param name="name" select="'Artikelnummer'"/>
        <xsl:with-param name="value" select="$article"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Menge'"/>
        <xsl:with-param name="value" select="cbc:Quantity"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Preis'"/>
        <xsl:with-param name="value" select="cac:Price/cbc:PriceAmount"/>
      </xsl:call-template>
      <xsl:call-template name="number">
        <xsl:with-param name="name" select="'Preiseinheit'"/>
        <xsl:with-param name="value" select="cac:Price/cbc:BaseQuantity"/>
      </xsl:call-template>
      <xsl:call-template name="date">
        <xsl:with-param name="name" select="'Liefertermin'"/>
        <xsl:with-param name="value" select="cac:Delivery/cac:RequestedDeliveryPeriod/cbc:StartDate"/>
      </xsl:call-template>
      <xsl:text>}</xsl:text>
    </xsl:for-each>
    <xsl:text>]}</xsl:text>
  </xsl:template>
</xsl:stylesheet>
