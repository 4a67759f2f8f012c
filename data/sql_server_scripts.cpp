// SQLUtilities: the scripts of the two routines the suite installs on a database server. Each
// creation script is its lines joined by CR LF, with none after the last.
#include <initializer_list>
#include <ravelin/data/sql_utilities.hpp>

namespace ravelin {
namespace {

String joinedLines(std::initializer_list<StringView> lines) {
  String text;
  bool first = true;
  for (const StringView line : lines) {
    if (!first) text += u"\r\n";
    text += line;
    first = false;
  }
  return text;
}

// castFloatToString(@Value, @DecimalPointChar): the decimal as text with the given decimal-point
// character and the trailing zeros of its fraction cut off; only the integer part when the whole
// fraction is zeros.
const String& castFloatToStringScript() {
  // clang-format off
  static const String script = joinedLines({
    u"CREATE FUNCTION [dbo].[castFloatToString] (@Value decimal(38,10),@DecimalPointChar char)",
    u"RETURNS varchar(256) AS  ",
    u"BEGIN ",
    u"   DECLARE @retValue as varchar(256)",
    u"   DECLARE @DecimalPlace as int",
    u"   DECLARE @DecimalValue as varchar(256)",
    u"   DECLARE @ValueLength as int",
    u"   DECLARE @DecimalValueLength as int",
    u"   DECLARE @DummyValue as numeric(38)",
    u"   SET @retValue=convert(varchar,@Value)",
    u"   SET @ValueLength=len(@retValue)",
    u"   /*Find the decimal separator*/",
    u"   SET @DecimalPlace=charindex('.',@retValue)",
    u"   if @DecimalPlace>0",
    u"   begin",
    u"       SET @DecimalValue=SUBSTRING(@retValue,@DecimalPlace+1,@ValueLength-@DecimalPlace)",
    u"       SET @DecimalValueLength=LEN(@DecimalValue)",
    u"       if (@DecimalValueLength>0)",
    u"       begin",
    u"           SET @retValue=LEFT(@retValue,@DecimalPlace-1)",
    u"           SET @DecimalPlace=1",
    u"           SET @DummyValue=0",
    u"           while ( (@DummyValue=RIGHT(@DecimalValue,@DecimalPlace)) AND (@DecimalPlace<=@DecimalValueLength))",
    u"           begin",
    u"               SET @DecimalPlace=@DecimalPlace+1",
    u"           end",
    u"           if @DecimalPlace<=@DecimalValueLength",
    u"           begin",
    u"               SET @retValue=@retValue+@DecimalPointChar+ SUBSTRING(@DecimalValue,1,@DecimalValueLength-@DecimalPlace+1)",
    u"           end",
    u"       end",
    u"       else",
    u"       begin",
    u"            SET @retValue=LEFT(@retValue,@DecimalPlace-1)",
    u"       end",
    u"   end",
    u"   return   @retValue",
    u"END",
  });
  // clang-format on
  return script;
}

// crosstab(@select, @sumfunc, @pivot1, @table): returns one row whose ValueSQL column holds
// @select with one aggregate column per distinct pivot value inserted before its " FROM ". The
// line that would store the result in a table stays a comment.
const String& crossTableScript() {
  // clang-format off
  static const String script = joinedLines({
    u"CREATE PROCEDURE crosstab ",
    u"@select varchar(8000),",
    u"@sumfunc varchar(500),",
    u"@pivot1 varchar(100),",
    u"@table varchar(100)",
    u" AS",
    u" DECLARE @sql varchar(8000), @delim varchar(1)",
    u" DECLARE @originalSumFunc varchar(500)",
    u" SET NOCOUNT ON",
    u" SET ANSI_WARNINGS ON",
    u" select @originalSumFunc=@sumfunc",
    u" EXEC ('SELECT ' + @pivot1 + ' AS pivotName INTO ##pivotName FROM ' + @table + ' WHERE 1=2')",
    u" EXEC ('INSERT INTO ##pivotName SELECT DISTINCT ' + @pivot1 + ' FROM ' + @table + ' WHERE '",
    u"+ @pivot1 + ' Is Not Null AND ' + @pivot1 + '<>''''')",
    u" SELECT @sql='',  @sumfunc=stuff(@sumfunc, len(@sumfunc), 1, ' END)' )",
    u" SELECT @delim=CASE Sign( CharIndex('char', data_type)+CharIndex('date', data_type) )",
    u" WHEN 0 THEN '' ELSE '''' END",
    u" From tempdb.information_schema.Columns",
    u" WHERE table_name='##pivotName' AND column_name='pivotName'",
    u" SELECT @sql=@sql + '''' + convert(varchar(100), pivotName) + ''' = ' +",
    u" stuff(@sumfunc,charindex( '(', @sumfunc )+1, 0, ' CASE ' + @pivot1 + ' WHEN '",
    u"+ @delim + convert(varchar(100), pivotName) + @delim + ' THEN ' ) + ', ' FROM ##pivotName",
    u" DROP TABLE ##pivotName",
    u" if @sql!=''",
    u" begin",
    u" SELECT @sql=left(@sql, len(@sql)-1)",
    u" SELECT @select=stuff(@select, charindex(' FROM ', @select)+1, 0, ', ' + @sql + ' ')",
    u" End",
    u" Else",
    u" begin",
    u" SELECT @select=stuff(@select, charindex(' FROM ', @select)+1, 0, ', '+ @originalSumFunc + ' AS [T]')",
    u" End",
    u" SELECT @select='SELECT ''' + REPLACE(@select,'''','''''') + ''' AS ValueSQL '",
    u"/*exec ('insert into [crossTabTable] ' + @select)*/",
    u" exec (@select)",
    u" SET ANSI_WARNINGS ON",
  });
  // clang-format on
  return script;
}

}  // namespace

void SQLUtilities::UDFCastFloatToString(String& vsSQLMain, String& vsSQLDrop) const {
  vsSQLMain = castFloatToStringScript();
  vsSQLDrop =
      u"if exists (select * from dbo.sysobjects where id = "
      u"object_id(N'[dbo].[castFloatToString]') and xtype in (N'FN', N'IF', N'TF'))\r\n"
      u"drop function [dbo].[castFloatToString]";
}

void SQLUtilities::UDFCrossTable(String& vsSQLMain, String& vsSQLDrop) const {
  vsSQLMain = crossTableScript();
  vsSQLDrop =
      u"if exists (select * from dbo.sysobjects where id = object_id(N'[dbo].[crosstab]') and "
      u"OBJECTPROPERTY(id, N'IsProcedure') = 1) drop procedure [dbo].[crosstab]";
}

}  // namespace ravelin
