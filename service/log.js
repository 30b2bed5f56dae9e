// A parent that stops reading, or is gone, must not end the service.
process.stdout.on('error', () => {});

/**
 * Writes one line to standard output; neither waits nor fails when nobody reads it.
 * @param {string} text without line end
 */
export function logLine(text) {
  process.stdout.write(`${text}\n`);
}
