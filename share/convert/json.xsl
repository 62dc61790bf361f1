<?xml version="1.0" encoding="UTF-8"?>
<!-- What the converters to files of jobs share: JSON texts, numbers and dates. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">

  <xsl:variable name="digits" select="'0123456789'"/>

  <!-- A member with a text, unless the text is empty; each follows another member. -->
  <xsl:template name="text">
    <xsl:param name="name"/>
    <xsl:param name="value"/>
    <xsl:variable name="content" select="normalize-space($value)"/>
    <xsl:if test="$content != ''">
      <xsl:value-of select="concat(',&quot;', $name, '&quot;:')"/>
      <xsl:call-template name="quoted">
        <xsl:with-param name="value" select="$content"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- The same for a text of several lines, which keeps them. -->
  <xsl:template name="lines">
    <xsl:param name="name"/>
    <xsl:param name="value"/>
    <xsl:if test="normalize-space($value) != ''">
      <xsl:value-of select="concat(',&quot;', $name, '&quot;:')"/>
      <xsl:call-template name="quoted">
        <xsl:with-param name="value" select="$value"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- A member with a number, digit by digit; a text that is none ends the conversion. -->
  <xsl:template name="number">
    <xsl:param name="name"/>
    <xsl:param name="value"/>
    <xsl:variable name="content" select="normalize-space($value)"/>
    <xsl:if test="$content != ''">
      <!-- A variable with a body would have the output read from its beginning each time. -->
      <xsl:variable name="unsigned" select="substring($content, 1 + starts-with($content, '-'))"/>
      <xsl:variable name="whole" select="substring-before(concat($unsigned, '.'), '.')"/>
      <xsl:variable name="fraction" select="substring-after($unsigned, '.')"/>
      <xsl:if test="$whole = '' or translate($whole, $digits, '') != '' or translate($fraction, $digits, '') != ''
                    or (contains($unsigned, '.') and $fraction = '')">
        <xsl:message terminate="yes">
          <xsl:value-of select="concat($name, ': &quot;', $content, '&quot; is not a number')"/>
        </xsl:message>
      </xsl:if>
      <xsl:value-of select="concat(',&quot;', $name, '&quot;:')"/>
      <xsl:if test="starts-with($content, '-')">-</xsl:if>
      <xsl:call-template name="withoutZeros">
        <xsl:with-param name="whole" select="$whole"/>
      </xsl:call-template>
      <xsl:if test="$fraction != ''"><xsl:value-of select="concat('.', $fraction)"/></xsl:if>
    </xsl:if>
  </xsl:template>

  <!-- JSON knows no leading zeros. -->
  <xsl:template name="withoutZeros">
    <xsl:param name="whole"/>
    <xsl:choose>
      <xsl:when test="string-length($whole) &gt; 1 and starts-with($whole, '0')">
        <xsl:call-template name="withoutZeros">
          <xsl:with-param name="whole" select="substring($whole, 2)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="$whole"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- A member with the day of yyyy-mm-dd, whatever time follows; anything else ends the conversion. -->
  <xsl:template name="date">
    <xsl:param name="name"/>
    <xsl:param name="value"/>
    <xsl:variable name="content" select="normalize-space($value)"/>
    <xsl:if test="$content != ''">
      <xsl:variable name="day" select="substring($content, 1, 10)"/>
      <xsl:if test="translate($day, $digits, '9999999999') != '9999-99-99'
                    or (string-length($content) &gt; 10 and not(contains('TZ+-', substring($content, 11, 1))))">
        <xsl:message terminate="yes">
          <xsl:value-of select="concat($name, ': &quot;', $content, '&quot; is not a date of the form yyyy-mm-dd')"/>
        </xsl:message>
      </xsl:if>
      <xsl:value-of select="concat(',&quot;', $name, '&quot;:&quot;', substring($day, 9, 2), '.', substring($day, 6, 2),
                                   '.', substring($day, 1, 4), '&quot;')"/>
    </xsl:if>
  </xsl:template>

  <!-- What must be there, or the conversion ends. -->
  <xsl:template name="require">
    <xsl:param name="what"/>
    <xsl:param name="value"/>
    <xsl:if test="normalize-space($value) = ''">
      <xsl:message terminate="yes"><xsl:value-of select="concat($what, ' is missing')"/></xsl:message>
    </xsl:if>
  </xsl:template>

  <xsl:template name="quoted">
    <xsl:param name="value"/>
    <xsl:text>"</xsl:text>
    <xsl:call-template name="escaped">
      <xsl:with-param name="value" select="$value"/>
    </xsl:call-template>
    <xsl:text>"</xsl:text>
  </xsl:template>

  <!-- XML has no other control characters than tab and the ends of lines. Halves are escaped by themselves, so
       that a long text does not take a call for each of its characters one in the other. -->
  <xsl:template name="escaped">
    <xsl:param name="value"/>
    <xsl:choose>
      <xsl:when test="translate($value, '&quot;\&#9;&#10;&#13;', '') = $value">
        <xsl:value-of select="$value"/>
      </xsl:when>
      <xsl:when test="string-length($value) = 1">
        <xsl:choose>
          <xsl:when test="$value = '&#9;'">\t</xsl:when>
          <xsl:when test="$value = '&#10;'">\n</xsl:when>
          <xsl:when test="$value = '&#13;'">\r</xsl:when>
          <xsl:otherwise><xsl:value-of select="concat('\', $value)"/></xsl:otherwise>
        </xsl:choose>
      </xsl:when>
      <xsl:otherwise>
        <xsl:variable name="half" select="floor(string-length($value) div 2)"/>
        <xsl:call-template name="escaped">
          <xsl:with-param name="value" select="substring($value, 1, $half)"/>
        </xsl:call-template>
        <xsl:call-template name="escaped">
          <xsl:with-param name="value" select="substring($value, $half + 1)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
