/** PNG files as pictures in shades of gray. */
import { PNG } from 'pngjs';

const SIGNATURE = Buffer.from('89504e470d0a1a0a', 'hex');
/** Bytes of the file at which its size stands. */
const SIZE_AT = 16;
/** Larger pictures are recognised as they are: taking them apart would keep the service from all else. */
const MAX_PIXELS = 16_000_000;

/**
 * @param {Buffer} file
 * @returns {import('./rules.js').GrayPicture | null} null for what is no PNG, is broken, or is too large
 */
export function readGray(file) {
  if (file.length < SIZE_AT + 8 || !file.subarray(0, SIGNATURE.length).equals(SIGNATURE)) return null;
  if (file.readUInt32BE(SIZE_AT) * file.readUInt32BE(SIZE_AT + 4) > MAX_PIXELS) return null;
  try {
    const { width, height, data } = PNG.sync.read(file);
    const gray = new Uint8Array(width * height);
    for (let i = 0; i < gray.length; i++) gray[i] = shade(data[4 * i], data[4 * i + 1], data[4 * i + 2], data[4 * i + 3]);
    return { width, height, data: gray };
  } catch {
    return null;
  }
}

/** Its lightness on white paper. */
const shade = (red, green, blue, alpha) =>
  255 - Math.round(((255 - (0.299 * red + 0.587 * green + 0.114 * blue)) * alpha) / 255);

/** @param {import('./rules.js').GrayPicture} picture @returns {Buffer} a PNG file */
export function writeGray({ width, height, data }) {
  const options = { width, height, colorType: 0, inputColorType: 0, bitDepth: 8, inputHasAlpha: false, deflateLevel: 1 };
  const png = new PNG(options);
  png.data = Buffer.from(data.buffer, data.byteOffset, data.byteLength);
  return PNG.sync.write(png, options);
}
