/** Pictures as the service recognises them best: PNG files, not too small. */

/** Letters on a screen are small; twice as large they are recognised far better. */
const SMALL = 1600;
/** In pixels of the longer side. */
const LARGEST = 4000;

/**
 * @param {Blob} file a picture of any kind that the browser knows
 * @param {HTMLCanvasElement} canvas shows it afterwards
 * @returns {Promise<Blob>} rejected for what is no picture
 */
export async function readPicture(file, canvas) {
  const picture = await createImageBitmap(file);
  const longer = Math.max(picture.width, picture.height);
  const scale = longer < SMALL ? 2 : Math.min(1, LARGEST / longer);
  canvas.width = Math.round(picture.width * scale);
  canvas.height = Math.round(picture.height * scale);
  const pen = canvas.getContext('2d');
  pen.imageSmoothingQuality = 'high';
  // What shows through is paper.
  pen.fillStyle = '#ffffff';
  pen.fillRect(0, 0, canvas.width, canvas.height);
  pen.drawImage(picture, 0, 0, canvas.width, canvas.height);
  picture.close();
  return new Promise((resolve, reject) => {
    canvas.toBlob((blob) => (blob ? resolve(blob) : reject(new Error('no picture'))), 'image/png');
  });
}
