/**
 * The workbook tools of the add-in that the chat offers to the language model, described for it. English whatever the
 * page speaks: the model reads it. A tool's name is its action, its arguments are the fields of the message.
 */

/**
 * @typedef {object} Tool
 * @property {string} description
 * @property {Record<string, object>} properties
 * @property {string[]} [required]
 * @property {string} [asks] key of the question that the user has to answer with yes beforehand
 * @property {boolean} [isPages] what the page itself does; the add-in knows no such action
 */

const RANGE = { type: 'string', description: 'A1 notation without $ and sheet name, such as B2:D10' };
const CELLS = { ...RANGE, description: `${RANGE.description}; 5000 cells at most, no whole rows or columns` };
const SHEET_NAME = { type: 'string', description: 'Name of a sheet; without it the active one' };
const COLOR = { type: 'string', description: '#RRGGBB' };
const NAME = { type: 'string', description: 'Name of the sheet' };
const INDEX = { type: 'integer', minimum: 1, description: 'Position of the sheet, from 1' };
const ROWS_OR_COLUMNS = { type: 'string', enum: ['rows', 'columns'] };
const INDICES = { type: 'array', items: { type: 'integer', minimum: 1 }, description: 'Rows or columns, from 1' };
const FLAG = { type: 'boolean' };
const POINTS = { type: 'integer', description: 'In points' };
const SIZES = (size, unit) => ({
  type: 'array',
  items: {
    type: 'object',
    properties: { range: { type: 'string' }, [size]: { type: 'number', description: unit } },
  },
});

const oneOf = (...words) => ({ type: 'string', enum: words });
const objectOf = (properties) => ({ type: 'object', properties });

/** By action. @type {Record<string, Tool>} */
export const TOOLS = {
  excelReadRange: {
    description: 'Reads the values and formulas of a range. Look at the data before you analyze or change it.',
    properties: { range: CELLS, sheetName: SHEET_NAME },
    required: ['range'],
  },
  excelWriteRange: {
    description: 'Writes values into a range, row by row. A text that begins with = is a formula.',
    properties: {
      range: CELLS,
      sheetName: SHEET_NAME,
      values: {
        type: 'array',
        items: { type: 'array', items: {} },
        description: 'One list a row; null empties a cell',
      },
    },
    required: ['range', 'values'],
  },
  excelFormatRange: {
    description: 'Sets font, fill, alignment, number format or borders of a range; what is not named stays.',
    properties: {
      range: RANGE,
      sheetName: SHEET_NAME,
      font: objectOf({
        bold: FLAG,
        italic: FLAG,
        underline: FLAG,
        size: { type: 'number' },
        name: { type: 'string' },
        color: COLOR,
      }),
      fill: objectOf({ color: COLOR }),
      alignment: objectOf({ horizontal: oneOf('left', 'center', 'right'), vertical: oneOf('top', 'middle', 'bottom') }),
      wrapText: FLAG,
      numberFormat: { type: 'string', description: 'Such as 0.00% or yyyy-mm-dd' },
      border: objectOf({
        edges: { type: 'array', items: oneOf('all', 'left', 'top', 'right', 'bottom', 'inside_h', 'inside_v') },
        style: oneOf('thin', 'thick', 'dashed', 'none'),
        color: COLOR,
      }),
    },
    required: ['range'],
  },
  excelSetSize: {
    description: 'Sets the widths of columns and the heights of rows, or fits them to their contents.',
    properties: {
      range: RANGE,
      sheetName: SHEET_NAME,
      columns: SIZES('width', 'In characters'),
      rows: SIZES('height', 'In points'),
      width: { type: 'number', description: "Of the range's columns, in characters" },
      height: { type: 'number', description: "Of the range's rows, in points" },
      autofit: { type: 'array', items: oneOf('columns', 'rows') },
    },
  },
  excelMergeCells: {
    description: 'Merges the cells of a range; only the contents of the first one stay.',
    properties: { range: RANGE, sheetName: SHEET_NAME },
    required: ['range'],
  },
  excelUnmergeCells: {
    description: 'Takes merged cells apart.',
    properties: { range: RANGE, sheetName: SHEET_NAME },
    required: ['range'],
  },
  excelGetWriteContext: {
    description: 'Tells where the user is: the active sheet and the selected cells.',
    properties: {},
  },
  excelRangeHasContent: {
    description: 'Tells whether a range holds anything, for example before it is written over.',
    properties: { range: RANGE, sheetName: SHEET_NAME },
    required: ['range'],
  },
  excelListSheets: { description: 'Lists the sheets of the workbook.', properties: {} },
  excelSetActiveSheet: {
    description: 'Shows a sheet, by its name or its position.',
    properties: { name: NAME, index: INDEX },
  },
  excelAddSheet: {
    description: 'Adds a sheet, behind all others unless a neighbor is named.',
    properties: { name: NAME, before: NAME, after: NAME },
  },
  excelDeleteSheet: {
    description: 'Deletes a sheet for good. The user is asked first.',
    properties: { name: NAME, index: INDEX },
    asks: 'chat.askDeleteSheet',
  },
  excelRenameSheet: {
    description: 'Gives a sheet a new name.',
    properties: { name: NAME, index: INDEX, new_name: NAME },
    required: ['new_name'],
  },
  excelDeleteRowsCols: {
    description: 'Deletes whole rows or columns of the active sheet for good. The user is asked first.',
    properties: { mode: ROWS_OR_COLUMNS, range: RANGE, indices: INDICES },
    required: ['mode'],
    asks: 'chat.askDeleteRowsCols',
  },
  excelInsertRowsCols: {
    description: 'Inserts empty rows or columns into the active sheet.',
    properties: { mode: ROWS_OR_COLUMNS, range: RANGE, indices: INDICES },
    required: ['mode'],
  },
  excelRemoveDuplicates: {
    description: 'Removes rows of a range that repeat an earlier one, for good. The user is asked first.',
    properties: {
      range: RANGE,
      compare_columns: { ...INDICES, description: 'Columns to compare, from 1 within the range; without it all' },
      has_header: { ...FLAG, description: 'The first row is a heading (default true)' },
      match_case: FLAG,
    },
    required: ['range'],
    asks: 'chat.askRemoveDuplicates',
  },
  excelCalcSetMode: {
    description: 'Says when formulas are calculated. Manual helps while much is written; set it back afterwards.',
    properties: { mode: oneOf('manual', 'automatic', 'semiautomatic') },
    required: ['mode'],
  },
  excelCalculateNow: { description: 'Calculates all formulas now.', properties: {} },
  excelCalcGetMode: { description: 'Tells when formulas are calculated.', properties: {} },
  excelChartCreate: {
    description: 'Puts a chart onto the active sheet.',
    properties: {
      type: oneOf('column', 'line', 'pie', 'bar'),
      source: { ...RANGE, description: 'The data with their headings, such as A1:C10' },
      title: { type: 'string' },
      left: POINTS,
      top: POINTS,
      width: POINTS,
      height: POINTS,
    },
    required: ['source'],
  },
  autofillScan: {
    description:
      'Finds the cells of a form that wait for input: empty cells with a label, and examples ("e.g.: …") and underlines ' +
      'to be replaced.',
    properties: { sheetName: SHEET_NAME },
  },
  proposeFills: {
    description:
      'Proposes what to fill into fields that autofillScan found. The user sees the list and chooses; only that is ' +
      'written. Leave out what you do not know.',
    properties: {
      fills: {
        type: 'array',
        items: {
          type: 'object',
          properties: {
            row: { type: 'integer', minimum: 1 },
            col: { type: 'integer', minimum: 1 },
            action: oneOf('fill', 'clear'),
            value: { type: 'string', description: 'As it is to be read; numbers with a point, dates as 2026-01-31' },
            confidence: { type: 'number', minimum: 0, maximum: 1 },
          },
          required: ['row', 'col', 'value'],
        },
      },
    },
    required: ['fills'],
    isPages: true,
  },
  excelScreenshotRange: {
    description: 'Shows the user a picture of a range. You are told its size only; read the cells to know what is there.',
    properties: { range: RANGE },
    required: ['range'],
  },
};

/** The one tool that the model does not ask for "yes" by itself: the page does once the user has said it. */
const CONFIRMED = { excelRemoveDuplicates: ['confirm'] };

/** The fields of each tool's message. @type {Record<string, string[]>} */
export const TOOL_FIELDS = Object.fromEntries(
  Object.entries(TOOLS)
    .filter(([, { isPages }]) => !isPages)
    .map(([action, { properties }]) => [
      action,
      ['requestId', ...Object.keys(properties), ...(CONFIRMED[action] ?? [])],
    ]),
);

/** The tools in the form that OpenAI's chat completions take. */
export const TOOL_CATALOG = Object.entries(TOOLS).map(([name, { description, properties, required = [] }]) => ({
  type: 'function',
  function: { name, description, parameters: { type: 'object', properties, required } },
}));
