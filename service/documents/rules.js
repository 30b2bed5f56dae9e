/**
 * The lines that are drawn between the cells of a table in a picture. Recognition takes them for letters, and joins
 * the words beside them: they are wiped out, and what stands beside them is moved apart.
 */

/**
 * @typedef {object} GrayPicture
 * @property {number} width in pixels
 * @property {number} height
 * @property {Uint8Array} data a byte a pixel, row by row from the top, 0 for black
 *
 * @typedef {object} Rule a drawn line; for a lying one x and y are swapped
 * @property {number} x of its first pixel
 * @property {number} thickness in pixels
 * @property {number} top its first pixel row
 * @property {number} bottom the row behind its last one
 */

/** Longer than the strokes of letters, and no longer than two rows of a table on a screen. */
const MIN_LENGTH = 40;
const MAX_THICKNESS = 6;
/** Levels of gray by which a rule is told from what it lies on; the lines between cells on a screen are faint. */
const CONTRAST = 14;
/** Levels by which the pixels of one rule may differ. */
const SAME = 24;
/** Some of the pixels have words right beside them. */
const MIN_FREE_DARK = 0.4;
const MIN_FREE_LIGHT = 0.9;
/** Pixels that are put in at a rule: more than a blank between words. */
const ROOM = 40;

/** With x and y swapped, so that lying rules are found like standing ones. */
function turned({ width, height, data }) {
  const swapped = new Uint8Array(data.length);
  for (let y = 0; y < height; y++) for (let x = 0; x < width; x++) swapped[x * height + y] = data[y * width + x];
  return { width: height, height: width, data: swapped };
}

/** @param {GrayPicture} picture @returns {Rule[]} the standing ones, from left to right */
export const findRules = (picture) => thickened(strokesOf(picture).sort((a, b) => a.x - b.x));

/** Runs of one shade of gray, a pixel wide, that differ from what is at both sides of them. */
function strokesOf(picture) {
  const { width, height, data } = picture;
  const strokes = [];
  const tops = new Int32Array(width);
  const shades = data.slice(0, width);
  for (let y = 1; y <= height; y++) {
    for (let x = 0; x < width; x++) {
      const level = y < height ? data[y * width + x] : Infinity;
      if (Math.abs(level - shades[x]) <= SAME) continue;
      const stroke = { x, thickness: 1, top: tops[x], bottom: y };
      if (y - tops[x] >= MIN_LENGTH && isMostlyFree(picture, stroke)) strokes.push(stroke);
      tops[x] = y;
      shades[x] = level;
    }
  }
  return strokes;
}

/** Whether enough of a stroke lies free. Light ones may be the space between letters that stand below each other. */
function isMostlyFree(picture, { x, top, bottom }) {
  let dark = 0;
  let light = 0;
  for (let y = top; y < bottom; y++) {
    const side = ridgeAt(picture, x, y);
    if (side < 0) dark++;
    if (side > 0) light++;
  }
  return dark >= MIN_FREE_DARK * (bottom - top) || light >= MIN_FREE_LIGHT * (bottom - top);
}

/** Below 0 where the pixel is darker than both sides, above 0 where it is lighter. The edge of a fill is neither. */
function ridgeAt({ width, data }, x, y) {
  const row = y * width;
  const level = data[row + x];
  const left = level - data[row + Math.max(0, x - MAX_THICKNESS)];
  const right = level - data[row + Math.min(width - 1, x + MAX_THICKNESS)];
  return Math.min(Math.abs(left), Math.abs(right)) > CONTRAST && left < 0 === right < 0 ? left : 0;
}

/** Joins the strokes that make one rule; what is thicker than a rule is a letter's stroke, or a bar of a drawing. */
function thickened(strokes) {
  const rules = [];
  for (const stroke of strokes) {
    const rule = rules.findLast(
      ({ x, thickness, top, bottom }) => x + thickness === stroke.x && top < stroke.bottom && stroke.top < bottom,
    );
    if (rule) {
      rule.thickness++;
      rule.top = Math.min(rule.top, stroke.top);
      rule.bottom = Math.max(rule.bottom, stroke.bottom);
    } else {
      rules.push(stroke);
    }
  }
  return rules.filter(({ thickness }) => thickness <= MAX_THICKNESS);
}

/**
 * @param {GrayPicture} picture
 * @returns {GrayPicture} the same without its rules, wider by as much as what they part was moved apart; the very same
 *   when it has none
 */
export function withoutRules(picture) {
  const standing = findRules(picture);
  const lying = findRules(turned(picture));
  if (standing.length + lying.length === 0) return picture;
  const clean = { ...picture, data: Uint8Array.from(picture.data) };
  for (const rule of standing) wipe(clean, rule, false);
  for (const rule of lying) wipe(clean, rule, true);
  return movedApart(clean, placesOf(standing));
}

/** Gives a rule, and the soft pixels at its edges and ends, the shade of what is in front of it. */
function wipe({ width, height, data }, { x, thickness, top, bottom }, isLying) {
  const [across, along, end, length] = isLying ? [width, 1, height, width] : [1, width, width, height];
  const before = Math.max(0, x - 2);
  for (let i = Math.max(0, top - MAX_THICKNESS); i < Math.min(length, bottom + MAX_THICKNESS); i++) {
    const shade = data[before * across + i * along];
    for (let j = before; j < Math.min(end, x + thickness + 1); j++) data[j * across + i * along] = shade;
  }
}

/** The standing rules by their place: parts of one line, above each other, share it. */
function placesOf(rules) {
  const places = [];
  for (const rule of [...rules].sort((a, b) => a.x - b.x)) {
    const place = places.at(-1);
    if (place && rule.x - place.x <= MAX_THICKNESS) place.rules.push(rule);
    else places.push({ x: rule.x, rules: [rule] });
  }
  return places;
}

/**
 * Room goes in only where the rule is. A cell over several columns stays whole: what it missed comes at the next rule,
 * so that columns stay below each other.
 */
function movedApart({ width, height, data }, places) {
  if (places.length === 0) return { width, height, data };
  const wide = width + ROOM * places.length;
  const moved = new Uint8Array(wide * height);
  for (let y = 0; y < height; y++) {
    let from = y * width;
    let to = y * wide;
    let owed = 0;
    for (const { x, rules } of places) {
      owed += ROOM;
      if (!rules.some(({ top, bottom }) => top <= y && y < bottom)) continue;
      const part = data.subarray(from, y * width + x);
      moved.set(part, to);
      moved.fill(data[y * width + Math.max(0, x - 2)], to + part.length, to + part.length + owed);
      from = y * width + x;
      to += part.length + owed;
      owed = 0;
    }
    const rest = data.subarray(from, (y + 1) * width);
    moved.set(rest, to);
    moved.fill(rest.at(-1), to + rest.length, (y + 1) * wide);
  }
  return { width: wide, height, data: moved };
}
